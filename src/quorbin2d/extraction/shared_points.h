#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace lset::detail {

/// The points on the grid edges of the row of cells under way: enough to share each between the two cells
/// that have its edge.
class SharedPoints {
 public:
    explicit SharedPoints(int width)
        : width_(static_cast<std::size_t>(width)),
          indices_(3 * width_ + 1, kNone),
          start_{0, 2 * width_ + 1, width_, 2 * width_} {}

    /// The index kept for edge 0 to 3 of the cell at column x, kNone if there is none yet.
    int& at(int x, int edge) { return indices_[start_[edge] + static_cast<std::size_t>(x)]; }

    void nextRow() {
        std::swap(start_[0], start_[2]);
        clear(start_[2]);
        clear(start_[3]);
    }

    static constexpr int kNone = -1;

 private:
    void clear(std::size_t start) {
        const auto first = indices_.begin() + static_cast<std::ptrdiff_t>(start);
        std::fill(first, first + static_cast<std::ptrdiff_t>(width_), kNone);
    }

    std::size_t width_;
    std::vector<int> indices_;  // edges 0 of the row, edges 2, and the upright edges from left to right
    std::size_t start_[4];      // of the indices of an edge, by its number in the cell
};

}  // namespace lset::detail
