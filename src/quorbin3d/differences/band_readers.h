#pragma once

#include <array>
#include <cstddef>

#include "band/differences/readers.h"
#include "common/differences/divide.h"
#include "quorbin3d/fast_level_set_3d.h"

namespace lset::detail {

template <>
struct BandTraits<FastLevelSet3D> {
    static constexpr std::size_t dimensions = 3;

    static std::array<double, 3> spacings(const FastLevelSet3D& band) {
        return {band.getXSpace(), band.getYSpace(), band.getZSpace()};
    }
    static double laplacian(double here, const std::array<double, 6>& beside,
                            const std::array<double, 3>& h) {
        const double minusTwice = here * -2.0;
        return ((beside[0] + minusTwice) + beside[1]) / (h[0] * h[0]) +
               ((minusTwice + beside[2]) + beside[3]) / (h[1] * h[1]) +
               ((minusTwice + beside[4]) + beside[5]) / (h[2] * h[2]);
    }
};

using VirtualBandReader3D = VirtualBandReader<FastLevelSet3D>;
using TiledBandReader3D = TiledBandReader<FastLevelSet3D>;

/// The central differences at a point.
inline std::array<double, 3> bandGradient(const TiledBandReader3D& band, TiledBandReader3D::Place p) {
    const auto& h = band.spacings();
    return {(band.get(band.step<0, 1>(p)) - band.get(band.step<0, -1>(p))) / (h[0] + h[0]),
            (band.get(band.step<1, 1>(p)) - band.get(band.step<1, -1>(p))) / (h[1] + h[1]),
            (band.get(band.step<2, 1>(p)) - band.get(band.step<2, -1>(p))) / (h[2] + h[2])};
}

}  // namespace lset::detail
