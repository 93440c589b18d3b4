#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "common/distance/foot_distance.h"
#include "common/storage/foot.h"
#include "common/vector.h"
#include "common/watch.h"

namespace lset::detail {

/// Finds the nearest of scattered feet in about log n steps: a tree that halves them along one axis after the
/// other (Bentley 1975).
template <std::size_t dimensions>
class FeetTree {
 public:
    FeetTree(const std::vector<Foot<dimensions>>& feet, Stretch stretch) : feet_(feet), order_(feet.size()) {
        for (std::size_t i = 0; i < order_.size(); ++i) order_[i] = i;
        std::size_t levels = 1;
        while (order_.size() >> levels != 0) ++levels;
        stretch.expect(order_.size() * levels);
        halve(0, order_.size(), 0, stretch);
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

    void halve(std::size_t first, std::size_t last, std::size_t axis, Stretch& stretch) {
        if (last - first < 2) return;
        stretch.step(last - first);
        const std::size_t middle = middleOf(first, last);
        const auto at = [&](std::size_t i) { return order_.begin() + static_cast<std::ptrdiff_t>(i); };
        std::nth_element(at(first), at(middle), at(last), [&](std::size_t a, std::size_t b) {
            const double here = feet_[a].at[axis], there = feet_[b].at[axis];
            return here < there || (here == there && a < b);
        });
        halve(first, middle, (axis + 1) % dimensions, stretch);
        halve(middle + 1, last, (axis + 1) % dimensions, stretch);
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
