#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "common/distance/reinitialize_dense.h"
#include "common/distance/set_operations.h"

namespace lset::detail {

/// The largest spacing of an offset, whose distance is checked.
template <std::size_t dimensions>
double largestOfOffset(const Vector<dimensions>& h, double distance) {
    checkSpacings<dimensions>(h);
    const double largest = *std::max_element(h.begin(), h.end());
    if (!(std::abs(distance) <= 1e9 * largest))
        throw std::invalid_argument(
            "the distance of an offset must be a finite number, at most a billion spacings");
    return largest;
}

inline double checkedRadius(double radius) {
    if (!(radius >= 0)) throw std::invalid_argument("a radius must be a finite number, and at least 0");
    return radius;
}

template <class Grid>
Grid offsetGrid(const Grid& grid, double distance) {
    constexpr std::size_t dimensions = DenseTraits<Grid>::dimensions;
    const auto h = DenseTraits<Grid>::spacings(grid);
    largestOfOffset<dimensions>(h, distance);
    Grid result = copyOf(grid);
    try {
        reinitializeDense<dimensions>(result.data(), DenseTraits<Grid>::sizes(result), h, {},
                                      OldValues::kForgotten);
    } catch (const quorbin::NoInterface&) {
        return result;
    }
    const std::size_t count = pointCount(result);
    for (double* value = result.data(); value != result.data() + count; ++value) *value -= distance;
    reinitializedIfCrossed(result);
    return result;
}

}  // namespace lset::detail
