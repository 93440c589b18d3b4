#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "common/distance/foot_distance.h"
#include "common/storage/foot.h"
#include "common/vector.h"

namespace lset::detail {

/// Finds the nearest of scattered feet in about log n steps: a tree that halves them along one axis after the
/// other (Bentley 1975).
template <std::size_t dimensions>
class FeetTree {
 public:
    explicit FeetTree(const std::vector<Foot<dimensions>>& feet) : feet_(feet), order_(feet.size()) {
        for (std::size_t i = 0; i < order_.size(); ++i) order_[i] = i;
        halve(0, order_.size(), 0);
    }

    /// Distance of a point from the interface around its nearest foot; there must be one.
    double distanceFrom(const Vector<dimensions>& p) const {
        Nearest nearest;
        search(0, order_.size(), 0, p, nearest);
        const Foot<dimensions>& foot = feet_[nearest.foot];
        return distanceTo(foot, p, foot.isSmooth ? foot.reach : 0.0);
    }

 private:
    struct Nearest {
        double squared = std::numeric_limits<double>::infinity();
        std::size_t foot = 0;
    };

    static std::size_t middleOf(std::size_t first, std::size_t last) { return first + (last - first) / 2; }

    void halve(std::size_t first, std::size_t last, std::size_t axis) {
        if (last - first < 2) return;
        const std::size_t middle = middleOf(first, last);
        const auto at = [&](std::size_t i) { return order_.begin() + static_cast<std::ptrdiff_t>(i); };
        std::nth_element(at(first), at(middle), at(last), [&](std::size_t a, std::size_t b) {
            const double here = feet_[a].at[axis], there = feet_[b].at[axis];
            return here < there || (here == there && a < b);
        });
        halve(first, middle, (axis + 1) % dimensions);
        halve(middle + 1, last, (axis + 1) % dimensions);
    }

    void search(std::size_t first, std::size_t last, std::size_t axis, const Vector<dimensions>& p,
                Nearest& nearest) const {
        if (first == last) return;
        const std::size_t middle = middleOf(first, last), here = order_[middle];
        const Vector<dimensions> apart = difference(p, feet_[here].at);
        const double squared = dot(apart, apart);
        if (squared < nearest.squared || (squared == nearest.squared && here < nearest.foot))
            nearest = {squared, here};
        const std::size_t next = (axis + 1) % dimensions;
        const bool isBefore = apart[axis] < 0;
        isBefore ? search(first, middle, next, p, nearest) : search(middle + 1, last, next, p, nearest);
        if (apart[axis] * apart[axis] > nearest.squared) return;
        isBefore ? search(middle + 1, last, next, p, nearest) : search(first, middle, next, p, nearest);
    }

    const std::vector<Foot<dimensions>>& feet_;
    std::vector<std::size_t> order_;
};

}  // namespace lset::detail
