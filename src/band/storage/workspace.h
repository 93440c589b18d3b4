#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <tuple>
#include <vector>

#include "band/storage/feet_space.h"
#include "band/storage/tiled_points.h"
#include "common/watch.h"
#include "hash.h"
#include "heap/march_queue.h"

namespace lset::detail {

/// What the points of a band are stored in.
template <std::size_t dimensions>
struct BandStorage;

template <>
struct BandStorage<2> {
    using Hash = PointHash<double>;
    using Entry = PointAnd<double>;
    static std::array<int, 2> pointOf(const Entry& entry) { return {entry.x, entry.y}; }
    static Entry entryOf(const std::array<int, 2>& p, double value) { return {p[0], p[1], value}; }
};

template <>
struct BandStorage<3> {
    using Hash = Point3Hash<double>;
    using Entry = Point3And<double>;
    static std::array<int, 3> pointOf(const Entry& entry) { return {entry.x, entry.y, entry.z}; }
    static Entry entryOf(const std::array<int, 3>& p, double value) { return {p[0], p[1], p[2], value}; }
};

/// Puts the points of a hash into a list, in their order.
template <class Entry>
void copyInOrder(const BucketTable<Entry>& points, std::vector<Entry>& inOrder, Stretch stretch = {}) {
    inOrder.clear();
    stretch.expect(static_cast<std::size_t>(points.buckets.count));
    for (const auto& bucket : points.buckets) {
        inOrder.insert(inOrder.end(), bucket.begin(), bucket.end());
        stretch.step();
    }
}

template <std::size_t dimensions>
void setPoints(typename BandStorage<dimensions>::Hash& points,
               const std::vector<typename BandStorage<dimensions>::Entry>& inOrder, Stretch stretch = {}) {
    stretch.expect(inOrder.size());
    points.clear();
    for (const auto& entry : inOrder) {
        std::apply([&](auto... c) -> double& { return points.add(c...); },
                   BandStorage<dimensions>::pointOf(entry)) = entry.value;
        stretch.step();
    }
}

/// Replaces the points of a hash, which are before, by others, none of which may occur twice. Where there is
/// not enough memory, or progress ends it, the hash has its points again, for which its buckets have room.
template <std::size_t dimensions>
void replacePoints(typename BandStorage<dimensions>::Hash& points,
                   const std::vector<typename BandStorage<dimensions>::Entry>& inOrder,
                   const std::vector<typename BandStorage<dimensions>::Entry>& before,
                   const Stretch& stretch = {}) {
    try {
        setPoints<dimensions>(points, inOrder, stretch);
    } catch (...) {
        setPoints<dimensions>(points, before);
        throw;
    }
}

/// What operations on a band work with: a copy of the band laid out by tiles, and lists. It is kept from one
/// call to the next, since memory that is new to the process costs more than all that is done to it.
template <std::size_t dimensions>
struct BandWorkspace {
    using Storage = BandStorage<dimensions>;
    using Entry = typename Storage::Entry;

    TiledPoints<dimensions> tiles;
    std::vector<Entry> inOrder;         // the stored points
    std::vector<int> numbers;           // of the stored points, in order
    std::vector<double> values;         // by number, 0 where nothing is stored
    std::vector<std::uint64_t> stored;  // a bit for each point of a tile

    std::vector<Entry> result;
    std::vector<signed char> states;  // by number
    std::vector<double> distances;    // by number
    std::vector<int> reached;
    MarchQueue queue;
    FeetSpace<dimensions> feet;

    void copy(const typename Storage::Hash& points, const Stretch& stretch = {}) {
        copyInOrder(points, inOrder, stretch.part(0, 0.5));
        tiles.clear();
        numbers.clear();
        Stretch rest = stretch.part(0.5, 1);
        rest.expect(inOrder.size());
        for (const Entry& entry : inOrder) {
            numbers.push_back(tiles.number(Storage::pointOf(entry)));
            rest.step();
        }
        values.assign(tiles.size(), 0.0);
        stored.assign(tiles.tileCount(), 0);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const auto number = static_cast<std::size_t>(numbers[i]);
            values[number] = inOrder[i].value;
            stored[number / kTileSize] |= std::uint64_t{1} << number % kTileSize;
        }
    }

    bool isStored(int number) const {
        const auto n = static_cast<std::size_t>(number);
        return (stored[n / kTileSize] >> n % kTileSize & 1) != 0;
    }

 private:
    static constexpr std::size_t kTileSize = TiledPoints<dimensions>::kTileSize;
};

}  // namespace lset::detail
