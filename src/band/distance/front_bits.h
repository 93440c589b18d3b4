#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "band/storage/tiled_points.h"

namespace lset::detail {

/// Finds the stored points of a band that have a stored neighbour on the other side, a tile of 64 points at a
/// time: inside and stored hold a bit for each point of a tile.
template <std::size_t dimensions>
class FrontBits {
 public:
    using Tiles = TiledPoints<dimensions>;
    using Bits = std::uint64_t;

    FrontBits(const Tiles& tiles, const std::vector<Bits>& inside, const std::vector<Bits>& stored)
        : tiles_(tiles), inside_(inside), stored_(stored) {}

    Bits of(std::size_t tile) const {
        Bits front = 0;
        look<0>(tile, front);
        return front;
    }

 private:
    static constexpr int kBits = 6 / static_cast<int>(dimensions);

    template <int axis>
    void look(std::size_t tile, Bits& front) const {
        compare<axis, 1>(tile, front);
        compare<axis, -1>(tile, front);
        if constexpr (axis + 1 < static_cast<int>(dimensions)) look<axis + 1>(tile, front);
    }

    /// The bits of the first layer of a tile along an axis.
    static constexpr Bits firstLayer(int axis) {
        Bits layer = 0;
        for (int place = 0; place < Tiles::kTileSize; ++place)
            if ((place >> (kBits * axis) & ((1 << kBits) - 1)) == 0) layer |= Bits{1} << place;
        return layer;
    }

    template <int axis, int step>
    void compare(std::size_t tile, Bits& front) const {
        constexpr int kStride = 1 << (kBits * axis), kAlong = ((1 << kBits) - 1) * kStride;
        constexpr Bits kFirst = firstLayer(axis), kLast = kFirst << kAlong;
        const int beside = tiles_.template tileBeside<axis, step>(static_cast<int>(tile));
        // Each point's neighbour in its place: from within the tile, or from the layer of the next one.
        const auto shifted = [&](const std::vector<Bits>& bits) {
            const Bits next = beside == Tiles::kNone || static_cast<std::size_t>(beside) >= bits.size()
                                  ? 0
                                  : bits[static_cast<std::size_t>(beside)];
            return step > 0 ? (bits[tile] & ~kFirst) >> kStride | (next & kFirst) << kAlong
                            : (bits[tile] & ~kLast) << kStride | (next & kLast) >> kAlong;
        };
        front |= stored_[tile] & shifted(stored_) & (inside_[tile] ^ shifted(inside_));
    }

    const Tiles& tiles_;
    const std::vector<Bits>& inside_;
    const std::vector<Bits>& stored_;
};

}  // namespace lset::detail
