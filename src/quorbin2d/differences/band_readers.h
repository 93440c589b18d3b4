#pragma once

#include <array>
#include <cstddef>

#include "band/differences/readers.h"
#include "quorbin2d/differences/stencils.h"
#include "quorbin2d/fast_level_set_2d.h"

namespace lset::detail {

template <>
struct BandTraits<FastLevelSet2D> {
    static constexpr std::size_t dimensions = 2;

    static std::array<double, 2> spacings(const FastLevelSet2D& band) {
        return {band.getXSpace(), band.getYSpace()};
    }
    static double laplacian(double here, const std::array<double, 4>& beside,
                            const std::array<double, 2>& h) {
        return fivePoint(here * -2.0, beside[0], beside[1], beside[2], beside[3], Divide{h[0] * h[0]},
                         Divide{h[1] * h[1]});
    }
};

using VirtualBandReader2D = VirtualBandReader<FastLevelSet2D>;
using TiledBandReader2D = TiledBandReader<FastLevelSet2D>;

}  // namespace lset::detail
