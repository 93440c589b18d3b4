#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "common/states.h"

namespace lset::detail {

/// The points next to a sign change, by index or number, in the order found.
struct Front {
    std::vector<int> outside, inside;

    void add(int point, bool isInside) { (isInside ? inside : outside).push_back(point); }
};

/// Finds the front of a dense grid: gives each of its points a state and a first distance, which
/// firstDistance(point) forms. The arrays have one entry for each grid point; states must be far everywhere.
template <std::size_t dimensions, class FirstDistance>
class FrontFinder {
 public:
    using Point = std::array<int, dimensions>;

    FrontFinder(const Point& sizes, signed char* states, double* distances, FirstDistance firstDistance)
        : sizes_(sizes), states_(states), distances_(distances), firstDistance_(firstDistance) {}

    Front takeFront() { return std::move(front_); }

    /// Looks at two neighbours: if the interface separates them, both become front points.
    void look(const Point& here, bool hereInside, const Point& beside, bool besideInside) {
        if (hereInside == besideInside) return;
        add(here, hereInside);
        add(beside, besideInside);
    }

 private:
    void add(const Point& p, bool inside) {
        std::ptrdiff_t i = 0;
        for (std::size_t axis = dimensions; axis-- > 0;) i = i * sizes_[axis] + p[axis];
        if (states_[i] != kFar) return;
        states_[i] = inside ? kInside : kOutside;
        distances_[i] = firstDistance_(p);
        front_.add(static_cast<int>(i), inside);
    }

    Point sizes_;
    signed char* states_;
    double* distances_;
    FirstDistance firstDistance_;
    Front front_;
};

}  // namespace lset::detail
