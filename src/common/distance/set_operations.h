#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "common/distance/reinitialize_checks.h"
#include "common/distance/reinitialize_part.h"
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
bool reinitializedIfCrossed(Grid& grid, const Stretch& stretch, OldValues old = OldValues::kTrusted) {
    try {
        reinitializePart(grid, stretch, old);
        return true;
    } catch (const quorbin::NoInterface&) {
        return false;
    }
}

/// A set operation on two grids, not yet reinitialised.
template <class Grid>
Grid combinedGrids(const Grid& a, const Grid& b, SetOperation operation, const Stretch& stretch) {
    using Traits = DenseTraits<Grid>;
    checkSameGrid(Traits::sizes(a), Traits::spacings(a), Traits::sizes(b), Traits::spacings(b));
    Grid result = gridOf<Grid>(Traits::sizes(a), Traits::spacings(a));
    inBlocks(pointCount(result), stretch, [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i)
            result.data()[i] = combinedValue(operation, a.data()[i], b.data()[i]);
    });
    return result;
}

template <class Grid>
Grid reinitializedCombination(const Grid& a, const Grid& b, SetOperation operation, const Stretch& stretch) {
    Grid result = combinedGrids(a, b, operation, stretch.part(0, 0.1));
    reinitializedIfCrossed(result, stretch.part(0.1, 1));
    return result;
}

/// change(value) gives the new value of each point.
template <class Grid, class Change>
void changeAll(Grid& grid, const Stretch& stretch, const Change& change) {
    inBlocks(pointCount(grid), stretch, [&](std::size_t first, std::size_t last) {
        std::transform(grid.data() + first, grid.data() + last, grid.data() + first, change);
    });
}

template <class Grid>
Grid complementOfGrid(const Grid& grid, const Stretch& stretch) {
    Grid result = copyOf(grid, stretch.part(0, 0.05));
    changeAll(result, stretch.part(0.05, 0.1), complementOf);
    reinitializedIfCrossed(result, stretch.part(0.1, 1));
    return result;
}

}  // namespace lset::detail
