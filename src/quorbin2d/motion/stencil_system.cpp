#include "quorbin2d/motion/stencil_system.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

#include "brin/sparse_matrix.h"
#include "common/motion/reflected.h"

namespace lset::detail {

StencilSystem::StencilSystem(int width, int height)
    : width_(width),
      height_(height),
      rows_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

void StencilSystem::multiply(const double* u, double* result) const {
    const auto width = static_cast<std::ptrdiff_t>(width_);
    const Row* row = rows_.data();
    for (int y = 0; y < height_; ++y) {
        const Reflected vertical(y, height_);
        const double* const here = u + y * width;
        const double* const below = u + vertical.before * width;
        const double* const above = u + vertical.after * width;
        const auto equation = [&](std::ptrdiff_t x, std::ptrdiff_t left, std::ptrdiff_t right) {
            const double alongX = row->left * here[left] + row->right * here[right];
            const double alongY = row->below * below[x] + row->above * above[x];
            *result++ = row->diagonal * here[x] + alongX + alongY;
            ++row;
        };
        const auto atEdge = [&](int x) {
            const Reflected horizontal(x, width_);
            equation(x, horizontal.before, horizontal.after);
        };
        atEdge(0);
        for (int x = 1; x + 1 < width_; ++x) equation(x, x - 1, x + 1);
        if (width_ > 1) atEdge(width_ - 1);
    }
}

double StencilSystem::norm() const {
    double largest = 0;
    for (const Row& row : rows_) {
        const double sum = std::abs(row.diagonal) + std::abs(row.left) + std::abs(row.right) +
                           std::abs(row.below) + std::abs(row.above);
        if (!std::isfinite(sum + row.rightSide)) return std::numeric_limits<double>::infinity();
        largest = std::max(largest, sum);
    }
    return largest;
}

void StencilSystem::solveDirectly(double* u) const {
    if (rows_.size() > INT_MAX / 5) {
        std::fill_n(u, rows_.size(), std::numeric_limits<double>::quiet_NaN());
        return;
    }
    const auto n = static_cast<int>(rows_.size());
    brin::SparseMatrix A(n, n, 5 * n);
    brin::Matrix b(n, 1);
    int i = 0;
    for (int y = 0; y < height_; ++y)
        for (int x = 0; x < width_; ++x, ++i) {
            const Row& row = rows_[static_cast<std::size_t>(i)];
            b.data()[i] = row.rightSide;
            A.get(i, i) = row.diagonal;
            if (width_ > 1) {
                const Reflected horizontal(x, width_);
                A.get(i, y * width_ + static_cast<int>(horizontal.before)) += row.left;
                A.get(i, y * width_ + static_cast<int>(horizontal.after)) += row.right;
            }
            if (height_ > 1) {
                const Reflected vertical(y, height_);
                A.get(i, static_cast<int>(vertical.before) * width_ + x) += row.below;
                A.get(i, static_cast<int>(vertical.after) * width_ + x) += row.above;
            }
        }
    const brin::Matrix solution = brin::SparseMatrix::umfsolve(A, b);
    std::copy_n(solution.data(), n, u);
}

}  // namespace lset::detail
