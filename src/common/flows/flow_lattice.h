#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

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

/// Samples on a lattice at a place, linear along each axis; beyond the lattice those of its nearest point.
template <class Value, class Point, std::size_t dimensions>
Value interpolated(const FlowLattice<Point, dimensions>& lattice, const std::vector<Value>& samples,
                   const Point& place) {
    std::array<std::size_t, dimensions> step;
    std::array<double, dimensions> part;
    typename FlowLattice<Point, dimensions>::Site low;
    std::size_t stride = 1;
    for (std::size_t axis = 0; axis < dimensions; ++axis) {
        const int last = lattice.sizes[axis] - 1;
        const double c =
            std::clamp(place[static_cast<int>(axis)] / lattice.h[axis], 0.0, static_cast<double>(last));
        low[axis] = std::min(static_cast<int>(c), std::max(last - 1, 0));
        part[axis] = c - low[axis];
        step[axis] = last > 0 ? stride : 0;
        stride *= static_cast<std::size_t>(lattice.sizes[axis]);
    }
    const std::size_t first = lattice.indexOf(low);
    Value sum{};
    for (unsigned corner = 0; corner < 1U << dimensions; ++corner) {
        double weight = 1;
        std::size_t at = first;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const bool isHigh = (corner >> axis & 1) != 0;
            weight *= isHigh ? part[axis] : 1 - part[axis];
            if (isHigh) at += step[axis];
        }
        sum += weight * samples[at];
    }
    return sum;
}

}  // namespace lset::detail
