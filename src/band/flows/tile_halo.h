#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

#include "band/storage/tiled_points.h"

namespace lset::detail {

/// The values of a tile of a band with those around it, one layer on all sides, in an array of their own:
/// not-a-number where nothing is stored.
template <std::size_t dimensions>
class TileHalo {
 public:
    using Tiles = TiledPoints<dimensions>;
    static constexpr int kSide = dimensions == 2 ? 8 : 4, kWide = kSide + 2;
    static constexpr std::array<int, 3> kStride = {1, kWide, kWide* kWide};

    /// values has those of the band by number, not-a-number where nothing is stored.
    void read(const Tiles& tiles, const std::vector<double>& values, int tile) {
        // The tiles around this one, by −1, 0 and 1 along each axis.
        std::array<int, dimensions == 2 ? 9 : 27> around;
        around.fill(Tiles::kNone);
        const std::size_t middle = around.size() / 2;
        around[middle] = tile;
        spreadAlong<0>(tiles, around, 1);
        constexpr int kLayers = dimensions == 3 ? kWide : 1;
        double* target = samples_.data();
        for (int z = 0; z < kLayers; ++z) {
            const Part pz = dimensions == 3 ? partOf(z) : Part{0, 0};
            for (int y = 0; y < kWide; ++y) {
                const Part py = partOf(y);
                const std::size_t row = (pz.tile * 3 + py.tile) * 3;
                const int place = (pz.inTile * kSide + py.inTile) * kSide;
                *target++ = valueOf(values, around[row], place + kSide - 1);
                for (int x = 0; x < kSide; ++x) *target++ = valueOf(values, around[row + 1], place + x);
                *target++ = valueOf(values, around[row + 2], place);
            }
        }
    }

    /// The sample at a place within the tile, from which others are strides away.
    const double* at(int place) const {
        int i = 0;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            i += kStride[axis] * (1 + (place >> (kBits * static_cast<int>(axis)) & (kSide - 1)));
        return samples_.data() + i;
    }

 private:
    static constexpr int kBits = 6 / static_cast<int>(dimensions);

    struct Part {
        std::size_t tile;
        int inTile;
    };
    static Part partOf(int c) {
        if (c == 0) return {0, kSide - 1};
        if (c == kWide - 1) return {2, 0};
        return {1, c - 1};
    }

    static double valueOf(const std::vector<double>& values, int tile, int place) {
        return tile == Tiles::kNone ? std::numeric_limits<double>::quiet_NaN()
                                    : values[static_cast<std::size_t>(tile) * Tiles::kTileSize +
                                             static_cast<std::size_t>(place)];
    }

    /// From the tiles found so far to those beside them along an axis, then along the others.
    template <int axis, class Around>
    static void spreadAlong(const Tiles& tiles, Around& around, std::size_t stride) {
        for (std::size_t i = 0; i < around.size(); ++i) {
            if (around[i] == Tiles::kNone || i / stride % 3 != 1 || !isInPlane<axis>(i)) continue;
            around[i + stride] = tiles.template tileBeside<axis, 1>(around[i]);
            around[i - stride] = tiles.template tileBeside<axis, -1>(around[i]);
        }
        if constexpr (axis + 1 < static_cast<int>(dimensions))
            spreadAlong<axis + 1>(tiles, around, 3 * stride);
    }
    /// Whether a tile lies in the middle along all later axes, so that this is its turn.
    template <int axis>
    static bool isInPlane(std::size_t i) {
        std::size_t stride = 1;
        for (int a = 0; a < static_cast<int>(dimensions); ++a, stride *= 3)
            if (a > axis && i / stride % 3 != 1) return false;
        return true;
    }

    std::array<double, dimensions == 2 ? kWide * kWide : kWide * kWide * kWide> samples_;
};

}  // namespace lset::detail
