#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/march_queue.h"
#include "common/tiled_points.h"
#include "hash.h"

namespace lset::detail {

/// Puts the points of a hash into a list, in their order.
inline void copyInOrder(const PointHash<double>& points, std::vector<PointAnd<double>>& inOrder) {
    inOrder.clear();
    for (const auto& bucket : points.buckets) inOrder.insert(inOrder.end(), bucket.begin(), bucket.end());
}

/// Replaces the points of a hash by others, none of which may occur twice.
inline void replacePoints(PointHash<double>& points, const std::vector<PointAnd<double>>& inOrder) {
    points.clear();
    for (const PointAnd<double>& point : inOrder) points.add(point.x, point.y) = point.value;
}

/// What operations on a band work with: a copy of the band laid out by tiles, and lists. It is kept from one call to the
/// next, since memory that is new to the process costs more than all that is done to it.
struct BandWorkspace2D {
    TiledPoints<2> tiles;
    std::vector<PointAnd<double>> inOrder;  // the stored points
    std::vector<int> numbers;               // of the stored points, in order
    std::vector<double> values;             // by number, 0 where nothing is stored
    std::vector<std::uint64_t> stored;      // a bit for each point of a tile

    std::vector<PointAnd<double>> result;
    std::vector<signed char> states;  // by number
    std::vector<double> distances;    // by number
    std::vector<int> known;
    MarchQueue queue;

    void copy(const PointHash<double>& points) {
        copyInOrder(points, inOrder);
        tiles.clear();
        numbers.clear();
        for (const PointAnd<double>& point : inOrder) numbers.push_back(tiles.number({point.x, point.y}));
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
    static constexpr std::size_t kTileSize = TiledPoints<2>::kTileSize;
};

}  // namespace lset::detail
