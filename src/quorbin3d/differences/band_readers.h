#pragma once

#include <array>
#include <cstddef>

#include "band/differences/readers.h"
#include "quorbin3d/fast_level_set_3d.h"

namespace lset::detail {

template <>
struct BandTraits<FastLevelSet3D> {
    using Base = LevelSet3D;  // which has the spacings
    static constexpr std::size_t dimensions = 3;

    static std::array<double, 3> spacings(const FastLevelSet3D& band) {
        return {band.getXSpace(), band.getYSpace(), band.getZSpace()};
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
