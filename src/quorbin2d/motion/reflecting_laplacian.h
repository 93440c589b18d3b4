#pragma once

#include <cstddef>
#include <vector>

#include "solvers/cosine_transform.h"

namespace lset::detail {

/// Solves (1 + 2 wx + 2 wy) u - wx (left + right) - wy (below + above) = b on a grid whose ends reflect
/// without repeating the edge point: cosines along x make the equations of each column independent, and those
/// are tridiagonal. For weights that are ≥ 0 and finite; an axis of one point must have the weight 0. About
/// 100 ns a point; at most 8 bytes a point beside the values.
class ReflectingLaplacian {
 public:
    ReflectingLaplacian(int width, int height, double wx, double wy);

    /// Replaces b by u.
    void solve(double* values);

 private:
    void transformRows(double* values, double scale);
    void eliminateAlongY(double* values) const;

    /// Row y of the reciprocal pivots. Those of the inner rows converge, and one row serves for all that
    /// follow.
    const std::vector<double>& inversePivots(std::size_t y) const;

    std::size_t width_, height_;
    double wy_;
    CosineTransform alongX_;
    std::vector<std::vector<double>> inversePivots_;
    std::vector<double> lastInversePivots_;
};

}  // namespace lset::detail
