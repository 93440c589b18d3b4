#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "common/distance/reinitialize_checks.h"
#include "common/storage/dense_traits.h"
#include "common/storage/same_grid.h"

namespace lset::detail {

enum class SetOperation { kUnion, kIntersection, kDifference };

/// A value for the side of not-a-number, which is outside.
inline double sided(double value) {
    return std::isnan(value) ? std::numeric_limits<double>::infinity() : value;
}

/// A value of the other side; 0 is inside, so the least positive one is its other side.
inline double complementOf(double value) {
    return value == 0 ? std::numeric_limits<double>::min() : -sided(value);
}

inline double combinedValue(SetOperation operation, double a, double b) {
    switch (operation) {
        case SetOperation::kUnion:
            return std::min(sided(a), sided(b));
        case SetOperation::kIntersection:
            return std::max(sided(a), sided(b));
        case SetOperation::kDifference:
            break;
    }
    return std::max(sided(a), complementOf(b));
}

/// Reinitialises a grid if it has an interface; whether it has.
template <class Grid>
bool reinitializedIfCrossed(Grid& grid) {
    checkSpacings<DenseTraits<Grid>::dimensions>(DenseTraits<Grid>::spacings(grid));
    try {
        return quorbin::reinitialize(grid);
    } catch (const quorbin::NoInterface&) {
        return false;
    }
}

/// A set operation on two grids, not yet reinitialised.
template <class Grid>
Grid combinedGrids(const Grid& a, const Grid& b, SetOperation operation) {
    using Traits = DenseTraits<Grid>;
    checkSameGrid(Traits::sizes(a), Traits::spacings(a), Traits::sizes(b), Traits::spacings(b));
    Grid result = gridOf<Grid>(Traits::sizes(a), Traits::spacings(a));
    const std::size_t count = pointCount(result);
    for (std::size_t i = 0; i < count; ++i)
        result.data()[i] = combinedValue(operation, a.data()[i], b.data()[i]);
    return result;
}

template <class Grid>
Grid reinitializedCombination(const Grid& a, const Grid& b, SetOperation operation) {
    Grid result = combinedGrids(a, b, operation);
    reinitializedIfCrossed(result);
    return result;
}

template <class Grid>
Grid complementOfGrid(const Grid& grid) {
    Grid result = copyOf(grid);
    const std::size_t count = pointCount(result);
    for (double* value = result.data(); value != result.data() + count; ++value)
        *value = complementOf(*value);
    reinitializedIfCrossed(result);
    return result;
}

}  // namespace lset::detail
