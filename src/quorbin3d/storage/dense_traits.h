#pragma once

#include <array>

#include "common/storage/dense_traits.h"
#include "quorbin3d/full_level_set_3d.h"

namespace lset::detail {

template <>
struct DenseTraits<FullLevelSet3D> {
    static constexpr std::size_t dimensions = 3;

    static std::array<int, 3> sizes(const FullLevelSet3D& grid) {
        return {grid.getWidth(), grid.getHeight(), grid.getDepth()};
    }
    static std::array<double, 3> spacings(const FullLevelSet3D& grid) {
        return {grid.getXSpace(), grid.getYSpace(), grid.getZSpace()};
    }
    static FullLevelSet3D make(const std::array<int, 3>& sizes, const std::array<double, 3>& h) {
        FullLevelSet3D grid;
        grid.init(sizes[0], sizes[1], sizes[2], h[0], h[1], h[2]);
        return grid;
    }
};

}  // namespace lset::detail
