#pragma once

#include <algorithm>
#include <cstddef>
#include <new>

#include "common/watch.h"

namespace lset::detail {

/// What one text for grids of both dimensions must know of them:
///
///     dimensions
///     sizes(grid), spacings(grid)       along each axis
///     make(sizes, spacings)             a grid of zeros; without enough memory, one of other sizes
template <class Grid>
struct DenseTraits;

template <class Grid>
std::size_t pointCount(const Grid& grid) {
    std::size_t points = 1;
    for (const int size : DenseTraits<Grid>::sizes(grid)) points *= static_cast<std::size_t>(size);
    return points;
}

/// A grid of zeros; throws std::bad_alloc.
template <class Grid, class Sizes, class Spacings>
Grid gridOf(const Sizes& sizes, const Spacings& h) {
    Grid grid = DenseTraits<Grid>::make(sizes, h);
    if (DenseTraits<Grid>::sizes(grid) != sizes) throw std::bad_alloc();
    return grid;
}

/// A copy; throws std::bad_alloc.
template <class Grid>
Grid copyOf(const Grid& grid, const Stretch& stretch) {
    Grid copy = gridOf<Grid>(DenseTraits<Grid>::sizes(grid), DenseTraits<Grid>::spacings(grid));
    inBlocks(pointCount(grid), stretch, [&](std::size_t first, std::size_t last) {
        std::copy(grid.data() + first, grid.data() + last, copy.data() + first);
    });
    return copy;
}

}  // namespace lset::detail
