#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "common/storage/nearest.h"

namespace lset::detail {

/// A dense grid as FootFinder and ClosestFeet see it: its samples, and what its points know of their
/// feet.
template <std::size_t dims>
class DenseLattice {
 public:
    static constexpr std::size_t dimensions = dims;
    using Point = std::array<int, dimensions>;

    struct Site {
        Point at;
        std::ptrdiff_t i;
    };
    using Place = Site;

    DenseLattice(const double* values, Nearest* nearest, const Point& sizes)
        : values_(values), nearest_(nearest), sizes_(sizes) {
        std::ptrdiff_t stride = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            strides_[axis] = stride;
            stride *= sizes[axis];
        }
    }

    const Point& sizes() const { return sizes_; }
    double value(const Site& site) const { return values_[site.i]; }
    Nearest& nearest(const Site& site) { return nearest_[site.i]; }
    static Place placeOf(const Site& site) { return site; }
    static Site siteAt(const Place& place) { return place; }
    Nearest& nearestAt(const Place& place) { return nearest(place); }

    /// visit(site of a neighbour, axis as a constant, step)
    template <std::size_t axis = 0, class Visit>
    void forEachBeside(const Site& site, const Visit& visit) const {
        constexpr std::integral_constant<std::size_t, axis> along;
        Site beside = site;
        if (site.at[axis] > 0) {
            beside.at[axis] = site.at[axis] - 1;
            beside.i = site.i - strides_[axis];
            visit(beside, along, -1);
        }
        if (site.at[axis] + 1 < sizes_[axis]) {
            beside.at[axis] = site.at[axis] + 1;
            beside.i = site.i + strides_[axis];
            visit(beside, along, 1);
        }
        if constexpr (axis + 1 < dimensions) forEachBeside<axis + 1>(site, visit);
    }

    /// Has what is known of the neighbours fetched into the cache.
    void prefetchBeside(const Site& site) const {
        for (std::size_t axis = 1; axis < dimensions; ++axis) {
            __builtin_prefetch(nearest_ + (site.i - strides_[axis]));
            __builtin_prefetch(nearest_ + (site.i + strides_[axis]));
        }
    }

    /// See FootFinder.
    template <class Samples>
    bool block(Point& first, Samples& samples) const {
        constexpr int kSide = 4;
        std::ptrdiff_t start = 0;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            if (sizes_[axis] < kSide) return false;
            first[axis] = std::clamp(first[axis], 0, sizes_[axis] - kSide);
            start += first[axis] * strides_[axis];
        }
        double* target = samples.data();
        for (int layer = 0; layer < (dimensions == 3 ? kSide : 1); ++layer)
            for (int row = 0; row < kSide; ++row) {
                const double* source = values_ + start + row * strides_[1] + layer * strides_[dimensions - 1];
                for (int x = 0; x < kSide; ++x) *target++ = source[x];
            }
        return true;
    }

 private:
    const double* values_;
    Nearest* nearest_;
    Point sizes_;
    std::array<std::ptrdiff_t, dimensions> strides_;
};

}  // namespace lset::detail
