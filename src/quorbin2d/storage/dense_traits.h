#pragma once

#include <array>

#include "common/storage/dense_traits.h"
#include "quorbin2d/full_level_set_2d.h"

namespace lset::detail {

template <>
struct DenseTraits<FullLevelSet2D> {
    static constexpr std::size_t dimensions = 2;

    static std::array<int, 2> sizes(const FullLevelSet2D& grid) {
        return {grid.getWidth(), grid.getHeight()};
    }
    static std::array<double, 2> spacings(const FullLevelSet2D& grid) {
        return {grid.getXSpace(), grid.getYSpace()};
    }
    static FullLevelSet2D make(const std::array<int, 2>& sizes, const std::array<double, 2>& h) {
        FullLevelSet2D grid;
        grid.init(sizes[0], sizes[1], h[0], h[1]);
        return grid;
    }
};

}  // namespace lset::detail
