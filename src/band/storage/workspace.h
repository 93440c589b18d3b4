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
using BandEntries = std::vector<typename BandStorage<dimensions>::Entry>;

/// Calls visitEach with a function that adds a point and its value.
template <std::size_t dimensions, class VisitEach>
void setPoints(typename BandStorage<dimensions>::Hash& points, const VisitEach& visitEach) {
    points.clear();
    visitEach([&](const std::array<int, dimensions>& point, double value) {
        std::apply([&](auto... c) -> double& { return points.add(c...); }, point) = value;
    });
}

/// Visits the points of a list.
template <std::size_t dimensions>
auto eachOf(const BandEntries<dimensions>& inOrder, const Stretch& stretch = {}) {
    return [&inOrder, stretch](const auto& visit) {
        Stretch steps = stretch;
        steps.expect(inOrder.size());
        for (const auto& entry : inOrder) {
            visit(BandStorage<dimensions>::pointOf(entry), entry.value);
            steps.step();
        }
    };
}

/// Replaces the points of a hash, which are before, by others, none of which may occur twice (see
/// setPoints). Where there is not enough memory, or progress ends it, the hash has its points again, for
/// which its buckets have room.
template <std::size_t dimensions, class VisitEach>
void replacePointsBy(typename BandStorage<dimensions>::Hash& points, const VisitEach& visitEach,
                     const BandEntries<dimensions>& before) {
    try {
        setPoints<dimensions>(points, visitEach);
    } catch (...) {
        setPoints<dimensions>(points, eachOf<dimensions>(before));
        throw;
    }
}

/// The same with the others in a list.
template <std::size_t dimensions>
void replacePoints(typename BandStorage<dimensions>::Hash& points, const BandEntries<dimensions>& inOrder,
                   const BandEntries<dimensions>& before, const Stretch& stretch = {}) {
    replacePointsBy<dimensions>(points, eachOf<dimensions>(inOrder, stretch), before);
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
        numbers.reserve(inOrder.size());
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
