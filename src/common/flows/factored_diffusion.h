#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "common/vector.h"
#include "common/watch.h"

namespace lset::detail {

/// Solves Π (1 − wᵢ δᵢᵢ) u = f in place on a dense grid, with second differences δᵢᵢ reflected at the border
/// (−1 is 1, n is n − 2): a tridiagonal elimination along each axis in turn, of many lines side by side.
template <std::size_t dimensions>
class FactoredDiffusion {
 public:
    using Sizes = std::array<int, dimensions>;

    FactoredDiffusion(const Sizes& sizes, const Vector<dimensions>& weights) {
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            sizes_[axis] = static_cast<std::size_t>(sizes[axis]);
            lines_[axis] = Line(sizes_[axis], weights[axis]);
        }
    }

    void solve(double* values, Stretch stretch) const {
        std::size_t all = 1;
        for (const std::size_t size : sizes_) all *= size;
        alongRows(values, all / sizes_[0], stretch);
        std::size_t stride = sizes_[0];
        for (std::size_t axis = 1; axis < dimensions; ++axis) {
            const std::size_t block = stride * sizes_[axis];
            for (std::size_t start = 0; start < all; start += block)
                for (std::size_t i = 0; i < stride; i += kBeside) {
                    const std::size_t count = std::min(kBeside, stride - i);
                    lines_[axis].solve(values + start + i, stride, count);
                    stretch.step(count * sizes_[axis]);
                }
            stride = block;
        }
    }

 private:
    static constexpr std::size_t kBeside = 64;  // lines that fit into the second level of cache together
    static constexpr std::size_t kRows = 8;

    /// The elimination of one line: its pivots depend on the weight alone.
    struct Line {
        double weight = 0;
        std::vector<double> inversePivot, ratio;

        Line() = default;
        Line(std::size_t size, double w) : weight(w), inversePivot(size, 1), ratio(size, 0) {
            if (size < 2) return;
            for (std::size_t i = 0; i < size; ++i) {
                const double below = i + 1 == size ? 2 * w : w, above = i == 0 ? 2 * w : w;
                inversePivot[i] = 1 / (1 + 2 * w - (i > 0 ? below * ratio[i - 1] : 0));
                ratio[i] = above * inversePivot[i];
            }
        }

        /// Of lines beside each other, whose points are a stride apart.
        void solve(double* values, std::size_t stride, std::size_t count) const {
            const std::size_t size = ratio.size();
            if (size < 2) return;
            for (std::size_t k = 0; k < count; ++k) values[k] *= inversePivot[0];
            for (std::size_t i = 1; i < size; ++i) {
                const double below = i + 1 == size ? 2 * weight : weight, inverse = inversePivot[i];
                double* __restrict here = values + i * stride;
                const double* __restrict before = here - stride;
                for (std::size_t k = 0; k < count; ++k) here[k] = (here[k] + below * before[k]) * inverse;
            }
            for (std::size_t i = size - 1; i-- > 0;) {
                const double part = ratio[i];
                double* __restrict here = values + i * stride;
                const double* __restrict after = here + stride;
                for (std::size_t k = 0; k < count; ++k) here[k] += part * after[k];
            }
        }
    };

    /// Rows lie one after the other in memory: a few of them are brought beside each other.
    void alongRows(double* values, std::size_t rows, Stretch& stretch) const {
        const std::size_t width = sizes_[0];
        if (width < 2) return;
        std::vector<double> beside(width * kRows);
        for (std::size_t row = 0; row < rows; row += kRows) {
            const std::size_t count = std::min(kRows, rows - row);
            double* const first = values + row * width;
            for (std::size_t r = 0; r < count; ++r)
                for (std::size_t x = 0; x < width; ++x) beside[x * kRows + r] = first[r * width + x];
            lines_[0].solve(beside.data(), kRows, kRows);
            for (std::size_t r = 0; r < count; ++r)
                for (std::size_t x = 0; x < width; ++x) first[r * width + x] = beside[x * kRows + r];
            stretch.step(count * width);
        }
    }

    std::array<std::size_t, dimensions> sizes_;
    std::array<Line, dimensions> lines_;
};

}  // namespace lset::detail
