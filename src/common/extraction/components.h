#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "common/watch.h"

namespace lset::detail {

enum class Adjacency { kFaces, kCorners };  // whether what touches by a diagonal is connected

/// The connected components of some points of a dense grid, in the order of their first points.
template <std::size_t dimensions>
class Components {
 public:
    using Point = std::array<int, dimensions>;

    struct Component {
        Point first;  // of its points, row by row
        Point lowest, highest;
        std::size_t points;
    };

    /// contains(i) tells whether the point of an index is one of them.
    template <class Contains>
    Components(const Point& sizes, Adjacency adjacency, const Contains& contains, const Stretch& stretch)
        : sizes_(sizes) {
        std::size_t count = 1;
        for (const int size : sizes) count *= static_cast<std::size_t>(size);
        numbers_ = filled(count, kNone, stretch.part(0, 0.1));
        findNeighbours(adjacency);
        Stretch rest = stretch.part(0.1, 1);
        rest.expect(2 * count);
        for (std::size_t i = 0; i < count; ++i) {
            if (numbers_[i] == kNone && contains(i)) fill(i, contains, rest);
            rest.step();
        }
    }

    const std::vector<Component>& list() const { return list_; }
    /// The component of a point, as its place in the list; kNone where it belongs to none.
    std::uint32_t of(std::size_t i) const { return numbers_[i]; }
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

 private:
    void findNeighbours(Adjacency adjacency) {
        constexpr int kBlock = dimensions == 2 ? 9 : 27;
        for (int k = 0; k < kBlock; ++k) {
            Point step;
            int left = k, along = 0;
            for (int& s : step) {
                s = left % 3 - 1;
                left /= 3;
                along += s * s;
            }
            if (along == 1 || (along > 1 && adjacency == Adjacency::kCorners)) neighbours_.push_back(step);
        }
    }

    template <class Contains>
    void fill(std::size_t start, const Contains& contains, Stretch& stretch) {
        if (list_.size() == kNone) throw std::length_error("more than four billion connected parts");
        const auto number = static_cast<std::uint32_t>(list_.size());
        const Point first = pointOf(start);
        Component component = {first, first, first, 0};
        std::vector<std::size_t> waiting = {start};
        numbers_[start] = number;
        while (!waiting.empty()) {
            const Point p = pointOf(waiting.back());
            waiting.pop_back();
            stretch.step();
            ++component.points;
            for (std::size_t axis = 0; axis < dimensions; ++axis) {
                component.lowest[axis] = std::min(component.lowest[axis], p[axis]);
                component.highest[axis] = std::max(component.highest[axis], p[axis]);
            }
            for (const Point& step : neighbours_) {
                std::size_t i;
                if (!indexBeside(p, step, i) || numbers_[i] != kNone || !contains(i)) continue;
                numbers_[i] = number;
                waiting.push_back(i);
            }
        }
        list_.push_back(component);
    }

    Point pointOf(std::size_t i) const {
        Point p;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const auto size = static_cast<std::size_t>(sizes_[axis]);
            p[axis] = static_cast<int>(i % size);
            i /= size;
        }
        return p;
    }

    bool indexBeside(const Point& p, const Point& step, std::size_t& i) const {
        i = 0;
        for (std::size_t axis = dimensions; axis-- > 0;) {
            const int c = p[axis] + step[axis];
            if (c < 0 || c >= sizes_[axis]) return false;
            i = i * static_cast<std::size_t>(sizes_[axis]) + static_cast<std::size_t>(c);
        }
        return true;
    }

    Point sizes_;
    std::vector<Point> neighbours_;
    std::vector<std::uint32_t> numbers_;
    std::vector<Component> list_;
};

}  // namespace lset::detail
