#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "common/vector.h"

namespace lset::detail {

/// The points of a grid, and cubics through four of them along each axis.
template <class Point_, std::size_t dims>
struct FlowLattice {
    static constexpr std::size_t dimensions = dims;
    using Point = Point_;
    using Site = std::array<int, dimensions>;

    Site sizes;
    Vector<dimensions> h;

    std::size_t count() const {
        std::size_t points = 1;
        for (const int size : sizes) points *= static_cast<std::size_t>(size);
        return points;
    }
    std::size_t indexOf(const Site& site) const {
        std::size_t index = 0;
        for (std::size_t axis = dimensions; axis-- > 0;)
            index = index * static_cast<std::size_t>(sizes[axis]) + static_cast<std::size_t>(site[axis]);
        return index;
    }
    Site siteOf(std::size_t index) const {
        Site site;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            site[axis] = static_cast<int>(index % static_cast<std::size_t>(sizes[axis]));
            index /= static_cast<std::size_t>(sizes[axis]);
        }
        return site;
    }
    Point placeOf(const Site& site) const {
        Point place;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            place[static_cast<int>(axis)] = h[axis] * site[axis];
        return place;
    }
    Site nearestTo(const Point& place) const {
        Site site;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            site[axis] = static_cast<int>(
                std::lround(std::clamp(place[static_cast<int>(axis)] / h[axis], 0.0, sizes[axis] - 1.0)));
        return site;
    }
    bool contains(const Point& place) const {
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const double c = place[static_cast<int>(axis)] / h[axis];
            if (!(c >= -kBeyond && c <= sizes[axis] - 1 + kBeyond)) return false;
        }
        return true;
    }
    Point clamped(Point place) const {
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            double& c = place[static_cast<int>(axis)];
            c = std::clamp(c, 0.0, h[axis] * (sizes[axis] - 1));
        }
        return place;
    }

    /// The block of four points an axis around a place in the grid, moved into the grid, and the weights of
    /// its points along each axis.
    struct Block {
        Site first;
        std::array<std::array<double, 4>, dimensions> weights;
    };
    Block blockAt(const Point& place) const {
        Block block;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const double c = place[static_cast<int>(axis)] / h[axis];
            const int cell = static_cast<int>(std::clamp(std::floor(c), 1.0, sizes[axis] - 3.0));
            block.first[axis] = cell - 1;
            const double s = c - cell, below = s + 1, above = s - 1, beyond = s - 2;
            block.weights[axis] = {-s * above * beyond / 6, below * above * beyond / 2,
                                   -below * s * beyond / 2, below * s * above / 6};
        }
        return block;
    }

 private:
    static constexpr double kBeyond = 1e-6;  // what rounding may bring a point on the border to
};

}  // namespace lset::detail
