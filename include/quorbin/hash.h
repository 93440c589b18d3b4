#pragma once

#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

/// An array that grows at its end. append reallocates it before it would be more than half full; until then,
/// references to its elements stay valid.
template <class T>
struct GrowArray {
    int capacity = 32;   ///< elements that fit; their memory is allocated when the first one is added
    int count = 0;       ///< elements in use
    T* data = nullptr;   ///< owned, allocated by new[]
    int increment = 32;  ///< see append

    GrowArray() = default;
    /// Deep copy. Begins as an empty array, so that memory is freed again if copying an element throws.
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
    /// Swaps the two arrays.
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

    /// Element i, from 0 to count − 1; i is checked by an assertion only.
    T& operator[](int i) {
        assert(i >= 0 && i < count);
        return data[i];
    }
    const T& operator[](int i) const {
        assert(i >= 0 && i < count);
        return data[i];
    }
    /// The elements, as a range.
    T* begin() { return data; }
    T* end() { return data + count; }
    const T* begin() const { return data; }
    const T* end() const { return data + count; }

    /// Adds a value-initialised element (0 for a number) and returns it. If 2 · count + 1 ≥ capacity, the
    /// capacity first grows by count + 1 + increment, and references to elements become invalid. Throws
    /// std::bad_alloc if there is no memory for that, and leaves the array unchanged.
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

/// A grid point of the plane and the value stored for it.
template <class T>
struct PointAnd {
    std::int32_t x, y;
    T value;

    bool isAtSamePoint(const PointAnd& other) const { return x == other.x && y == other.y; }
};
/// A grid point of a volume and the value stored for it.
template <class T>
struct Point3And {
    std::int32_t x, y, z;
    T value;

    bool isAtSamePoint(const Point3And& other) const { return x == other.x && y == other.y && z == other.z; }
};

namespace lset::detail {

/// Entries in a fixed number of buckets. They are in order bucket by bucket, and in a bucket as they were
/// added. All operations on narrow bands visit points in this order.
template <class Entry>
struct BucketTable {
    int bucketCount;
    GrowArray<GrowArray<Entry>> buckets;  ///< bucketCount of them

    /// An empty table of max(count, 1) buckets.
    BucketTable(int count) : bucketCount(std::max(count, 1)) {
        buckets.data = new GrowArray<Entry>[static_cast<std::size_t>(bucketCount)];
        buckets.capacity = buckets.count = bucketCount;
    }

    ~BucketTable() = default;
    BucketTable(const BucketTable&) = default;
    /// A table that has been moved from is without buckets until a point is added to it.
    BucketTable(BucketTable&& other) noexcept
        : bucketCount(std::exchange(other.bucketCount, 0)), buckets(std::move(other.buckets)) {}
    BucketTable& operator=(BucketTable&& other) noexcept {
        swap(other);
        return *this;
    }
    /// Deep copy. If there is not enough memory, throws std::bad_alloc and leaves this table unchanged.
    BucketTable& operator=(const BucketTable& other) {
        BucketTable copy(other);
        swap(copy);
        return *this;
    }

    void swap(BucketTable& other) noexcept {
        std::swap(bucketCount, other.bucketCount);
        buckets.swap(other.buckets);
    }

    /// Number of entries; takes time in proportion to the number of buckets.
    int size() const {
        int total = 0;
        for (const GrowArray<Entry>& bucket : buckets) total += bucket.count;
        return total;
    }

    /// Removes all entries; the buckets keep their memory.
    void clear() {
        for (GrowArray<Entry>& bucket : buckets) bucket.count = 0;
    }

 protected:
    /// sum is the hash of the key's point, a weighted sum of its coordinates. It selects the bucket.
    const Entry* findEntry(std::uint32_t sum, const Entry& key) const {
        if (bucketCount == 0) return nullptr;
        for (const Entry& entry : bucketOf(sum))
            if (entry.isAtSamePoint(key)) return &entry;
        return nullptr;
    }
    Entry& findOrAdd(std::uint32_t sum, const Entry& key) {
        const Entry* entry = findEntry(sum, key);
        return entry != nullptr ? const_cast<Entry&>(*entry) : addEntry(sum, key);
    }
    Entry& addEntry(std::uint32_t sum, const Entry& key) {
        if (bucketCount == 0) *this = BucketTable(kFewBuckets);
        return const_cast<GrowArray<Entry>&>(bucketOf(sum)).append() = key;
    }

 private:
    static constexpr int kFewBuckets = 211;

    const GrowArray<Entry>& bucketOf(std::uint32_t sum) const {
        return buckets.data[sum % static_cast<std::uint32_t>(bucketCount)];
    }
};

}  // namespace lset::detail

/// A hash table from grid points to values; coordinates may be negative. Points are added and never removed
/// one by one. A bucket is searched entry by entry, so bucketCount should be about the number of points.
/// References to values stay valid until a point is added to a bucket that has to grow for it (see
/// GrowArray::append). Copies are deep and keep the order of the entries.
template <class T>
struct PointHash : lset::detail::BucketTable<PointAnd<T>> {
    using Entry = PointAnd<T>;
    using lset::detail::BucketTable<Entry>::BucketTable;

    /// The value of a point. A point that is absent is added with the value 0.
    T& operator()(int x, int y) { return this->findOrAdd(sumOf(x, y), {x, y, T()}).value; }

    /// The value of a point, or null where it is absent.
    const T* find(int x, int y) const {
        const Entry* entry = this->findEntry(sumOf(x, y), {x, y, T()});
        return entry != nullptr ? &entry->value : nullptr;
    }
    T* find(int x, int y) { return const_cast<T*>(static_cast<const PointHash&>(*this).find(x, y)); }

    /// Adds a point with the value 0. It must be absent, which is not checked.
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
