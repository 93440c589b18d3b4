#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

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
Grid offsetGrid(const Grid& grid, double distance, const Stretch& stretch) {
    constexpr std::size_t dimensions = DenseTraits<Grid>::dimensions;
    const auto h = DenseTraits<Grid>::spacings(grid);
    largestOfOffset<dimensions>(h, distance);
    Grid result = copyOf(grid, stretch.part(0, 0.05));
    if (!reinitializedIfCrossed(result, stretch.part(0.05, 0.5), OldValues::kForgotten)) return result;
    changeAll(result, stretch.part(0.5, 0.55), [=](double value) { return value - distance; });
    reinitializedIfCrossed(result, stretch.part(0.55, 1));
    return result;
}

}  // namespace lset::detail
