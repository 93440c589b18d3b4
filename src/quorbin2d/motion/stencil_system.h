#pragma once

#include <cstddef>
#include <vector>

namespace lset::detail {

/// The linear system of an implicit step: an equation for each grid point, over the point and its four
/// neighbours. Neighbours beyond the edge are reflected without repeating the edge point, at both ends, so
/// that an edge point has the same neighbour twice; along an axis of one point there are none. 48 bytes a
/// point.
class StencilSystem {
 public:
    struct Row {
        double diagonal, left, right, below, above, rightSide;
    };

    StencilSystem(int width, int height);

    /// Points are numbered row by row.
    Row& operator[](std::size_t i) { return rows_[i]; }
    const Row& operator[](std::size_t i) const { return rows_[i]; }
    std::size_t size() const { return rows_.size(); }

    /// Puts A u into result.
    void multiply(const double* u, double* result) const;

    /// Largest sum of magnitudes of a row's weights: the norm that belongs to the largest magnitude of a
    /// vector. Not finite where a weight or a right side is not.
    double norm() const;

    /// Assembles the matrix and leaves its solution in u, by the direct solver; not-a-number where there is
    /// none or the matrix is too large to be numbered.
    void solveDirectly(double* u) const;

 private:
    int width_, height_;
    std::vector<Row> rows_;
};

}  // namespace lset::detail
