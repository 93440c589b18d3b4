#pragma once

#include <array>
#include <cstddef>

#include "band/differences/readers.h"
#include "quorbin2d/fast_level_set_2d.h"

namespace lset::detail {

template <>
struct BandTraits<FastLevelSet2D> {
    using Base = LevelSet2D;  // which has the spacings
    static constexpr std::size_t dimensions = 2;

    static std::array<double, 2> spacings(const FastLevelSet2D& band) {
        return {band.getXSpace(), band.getYSpace()};
    }
};

using VirtualBandReader2D = VirtualBandReader<FastLevelSet2D>;
using TiledBandReader2D = TiledBandReader<FastLevelSet2D>;

}  // namespace lset::detail
