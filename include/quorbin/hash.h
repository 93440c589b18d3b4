#pragma once

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

/// An array that grows at its end. It keeps itself about half empty: what a reference into it is worth
/// follows from that.
template <class T>
struct GrowArray {
    int capacity = 32;  ///< elements there is room for; the room is taken with the first one
    int count = 0;      ///< elements in use
    T* data = nullptr;  ///< owned, allocated by new[]
    int increment = 32;

    GrowArray() = default;
    /// By way of an empty one, so that what is taken is freed again where copying an element throws.
    GrowArray(const GrowArray& other) : GrowArray() { *this = other; }
    GrowArray(GrowArray&& other) noexcept { swap(other); }
    ~GrowArray() { delete[] data; }

    GrowArray& operator=(const GrowArray& other) {
        if (this == &other) return *this;
        if (other.count > (data ? capacity : 0)) reallocate(other.capacity, 0);
        std::copy_n(other.data, other.count, data);
        count = other.count;
        increment = other.increment;
        return *this;
    }
    GrowArray& operator=(GrowArray&& other) noexcept {
        swap(other);
        return *this;
    }
    void swap(GrowArray& other) noexcept {
        std::swap(capacity, other.capacity);
        std::swap(count, other.count);
        std::swap(data, other.data);
        std::swap(increment, other.increment);
    }

    T& operator[](int i) {
        assert(i >= 0 && i < count);
        return data[i];
    }
    const T& operator[](int i) const {
        assert(i >= 0 && i < count);
        return data[i];
    }
    T* begin() { return data; }
    T* end() { return data + count; }
    const T* begin() const { return data; }
    const T* end() const { return data + count; }

    /// Adds an element of zeros. Where 2 · count + 1 is not below the capacity, that grows by count + 1 +
    /// increment first and references become invalid.
    T& append() {
        if (2LL * count + 1 >= capacity) {
            const long long grown = static_cast<long long>(capacity) + (count + 1) + increment;
            if (grown > INT_MAX) throw std::bad_alloc();
            reallocate(static_cast<int>(grown), count);
        } else if (data == nullptr) {
            reallocate(capacity, 0);
        }
        return data[count++] = T();
    }

 private:
    void reallocate(int newCapacity, int kept) {
        std::unique_ptr<T[]> larger(new T[static_cast<std::size_t>(newCapacity)]());
        std::move(data, data + kept, larger.get());
        delete[] data;
        data = larger.release();
        capacity = newCapacity;
    }
};

/// A grid point with what is stored for it.
template <class T>
struct PointAnd {
    std::int32_t x, y;
    T value;

    bool isAtSamePoint(const PointAnd& other) const { return x == other.x && y == other.y; }
};
template <class T>
struct Point3And {
    std::int32_t x, y, z;
    T value;

    bool isAtSamePoint(const Point3And& other) const { return x == other.x && y == other.y && z == other.z; }
};

namespace lset::detail {

/// A fixed number of buckets of entries. Visiting bucket by bucket, and in each its entries in the order in
/// which they came, is the order in which everything on narrow bands goes.
template <class Entry>
struct BucketTable {
    int bucketCount;
    GrowArray<GrowArray<Entry>> buckets;  ///< as many as bucketCount

    /// An empty table of max(count, 1) buckets.
    BucketTable(int count) : bucketCount(std::max(count, 1)) {
        buckets.data = new GrowArray<Entry>[static_cast<std::size_t>(bucketCount)];
        buckets.capacity = buckets.count = bucketCount;
    }

    ~BucketTable() = default;
    BucketTable(const BucketTable&) = default;
    /// Both or neither: a table whose buckets cannot be had stays as it is.
    BucketTable& operator=(const BucketTable& other) {
        BucketTable copy(other);
        swap(copy);
        return *this;
    }

    void swap(BucketTable& other) noexcept {
        std::swap(bucketCount, other.bucketCount);
        buckets.swap(other.buckets);
    }

    /// Number of entries.
    int size() const {
        int total = 0;
        for (const GrowArray<Entry>& bucket : buckets) total += bucket.count;
        return total;
    }

    /// Leaves no entry; the buckets keep their memory.
    void clear() {
        for (GrowArray<Entry>& bucket : buckets) bucket.count = 0;
    }

 protected:
    /// Entries are found by the sum of their coordinates, each weighed, and their point.
    const Entry* findEntry(std::uint32_t sum, const Entry& key) const {
        for (const Entry& entry : bucketOf(sum))
            if (entry.isAtSamePoint(key)) return &entry;
        return nullptr;
    }
    Entry& findOrAdd(std::uint32_t sum, const Entry& key) {
        const Entry* entry = findEntry(sum, key);
        return entry != nullptr ? const_cast<Entry&>(*entry) : addEntry(sum, key);
    }
    Entry& addEntry(std::uint32_t sum, const Entry& key) {
        return const_cast<GrowArray<Entry>&>(bucketOf(sum)).append() = key;
    }

 private:
    const GrowArray<Entry>& bucketOf(std::uint32_t sum) const {
        return buckets.data[sum % static_cast<std::uint32_t>(bucketCount)];
    }
};

}  // namespace lset::detail

/// A hash table from grid points, of any sign, to values. Points are added and never removed; buckets are
/// searched one entry after the other, so bucketCount should be about the number of points. References stay
/// valid until a point enters a bucket that has to grow for it. Copying is deep and keeps the order of the
/// entries.
template <class T>
struct PointHash : lset::detail::BucketTable<PointAnd<T>> {
    using Entry = PointAnd<T>;
    using lset::detail::BucketTable<Entry>::BucketTable;

    /// The value of a point, which is added with 0 where it is absent.
    T& operator()(int x, int y) { return this->findOrAdd(sumOf(x, y), {x, y, T()}).value; }

    /// The value of a point, or null where it is absent.
    const T* find(int x, int y) const {
        const Entry* entry = this->findEntry(sumOf(x, y), {x, y, T()});
        return entry != nullptr ? &entry->value : nullptr;
    }
    T* find(int x, int y) { return const_cast<T*>(static_cast<const PointHash&>(*this).find(x, y)); }

    /// Adds a point that is known to be absent.
    T& add(int x, int y) { return this->addEntry(sumOf(x, y), {x, y, T()}).value; }

 private:
    static std::uint32_t sumOf(int x, int y) {
        return (static_cast<std::uint32_t>(y) << 10) + static_cast<std::uint32_t>(x);
    }
};

/// The same for grid points of a volume.
template <class T>
struct Point3Hash : lset::detail::BucketTable<Point3And<T>> {
    using Entry = Point3And<T>;
    using lset::detail::BucketTable<Entry>::BucketTable;

    T& operator()(int x, int y, int z) { return this->findOrAdd(sumOf(x, y, z), {x, y, z, T()}).value; }

    const T* find(int x, int y, int z) const {
        const Entry* entry = this->findEntry(sumOf(x, y, z), {x, y, z, T()});
        return entry != nullptr ? &entry->value : nullptr;
    }
    T* find(int x, int y, int z) {
        return const_cast<T*>(static_cast<const Point3Hash&>(*this).find(x, y, z));
    }

    T& add(int x, int y, int z) { return this->addEntry(sumOf(x, y, z), {x, y, z, T()}).value; }

 private:
    static std::uint32_t sumOf(int x, int y, int z) {
        return (((static_cast<std::uint32_t>(z) << 6) + static_cast<std::uint32_t>(y)) << 6) +
               static_cast<std::uint32_t>(x);
    }
};
