#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "quorbin3d/extraction/indexed_mesh.h"

namespace lset::detail {

/// The vertices on the grid edges of the layer of cells under way, and of the grid layer above it: enough to
/// share each between the cells that have its edge.
class SharedVertices {
 public:
    SharedVertices(int width, int height)
        : width_(static_cast<std::size_t>(width)),
          lower_(2 * width_ * static_cast<std::size_t>(height), IndexedMesh::kNone),
          upper_(lower_),
          upright_(lower_.size() / 2, IndexedMesh::kNone) {}

    /// The index kept for an edge of cell (x, y), IndexedMesh::kNone if there is none yet.
    int& at(int x, int y, int edge) {
        // An edge is known by the end with the smaller coordinates, and its axis.
        static constexpr int kX[12] = {0, 1, 0, 0, 1, 1, 0, 0, 0, 1, 0, 0};
        static constexpr int kY[12] = {0, 0, 1, 0, 0, 1, 1, 0, 0, 0, 1, 0};
        const std::size_t point =
            static_cast<std::size_t>(y + kY[edge]) * width_ + static_cast<std::size_t>(x + kX[edge]);
        if (edge >= 4 && edge < 8) return upright_[point];
        return (edge < 4 ? lower_ : upper_)[2 * point + static_cast<std::size_t>(edge % 2)];
    }

    void nextLayer() {
        lower_.swap(upper_);
        std::fill(upper_.begin(), upper_.end(), IndexedMesh::kNone);
        std::fill(upright_.begin(), upright_.end(), IndexedMesh::kNone);
    }

 private:
    std::size_t width_;
    std::vector<int> lower_, upper_;  // edges along x and y, two a point
    std::vector<int> upright_;
};

}  // namespace lset::detail
