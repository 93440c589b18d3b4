#pragma once

#include <cstddef>
#include <vector>

namespace lset::detail {

/// The index of the point on each grid edge, by the number of the grid point where the edge begins (left or
/// below).
class PointsByEdge {
 public:
    static constexpr int kNone = -1;

    template <class Reader, class Place>
    int& at(Reader& band, const Place (&corners)[4], int edge) {
        // Edges 0 and 2 lie along x, 1 and 3 along y; they begin at corners 0, 3, 1 and 0.
        static constexpr int kBegin[4] = {0, 1, 3, 0};
        const auto number = static_cast<std::size_t>(band.number(corners[kBegin[edge]]));
        if (indices_.size() < 2 * band.tiles().size()) indices_.resize(2 * band.tiles().size(), kNone);
        return indices_[2 * number + (edge % 2 == 0 ? 0 : 1)];
    }

 private:
    std::vector<int> indices_;
};

}  // namespace lset::detail
