#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "common/vector.h"
#include "common/watch.h"

namespace lset::detail {

/// Which points of a dense grid min/max flow moves: those around which the field's mean over a box of 2r + 1
/// samples an axis is that of an interface that bends within about r samples, and which bend that way.
template <std::size_t dimensions>
class NoiseMask {
 public:
    using Sizes = std::array<int, dimensions>;

    NoiseMask(const Sizes& sizes, const Vector<dimensions>& h, int radius)
        : sizes_(sizes), radius_(radius), reach_(radius * *std::min_element(h.begin(), h.end())) {}

    /// Sets the rates of all other points to 0.
    void apply(const double* values, double* rates, const Stretch& stretch) {
        std::ptrdiff_t count = 1;
        for (const int size : sizes_) count *= size;
        if (mean_.empty()) mean_ = filled(static_cast<std::size_t>(count), 0.0, stretch);
        // What lies further off must not outweigh what is near.
        inBlocks(mean_.size(), stretch, [&](std::size_t first, std::size_t last) {
            for (std::size_t i = first; i < last; ++i) mean_[i] = std::clamp(values[i], -reach_, reach_);
        });
        std::ptrdiff_t stride = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            averageAlong(axis, stride, count, stretch);
            stride *= sizes_[axis];
        }
        // An arc of radius R has a mean of about r² / 6 R: 1 / 12 of the reach where R is twice the radius.
        const double least = reach_ / 12;
        inBlocks(mean_.size(), stretch, [&](std::size_t first, std::size_t last) {
            for (std::size_t i = first; i < last; ++i)
                rates[i] = mean_[i] > least    ? std::max(rates[i], 0.0)
                           : mean_[i] < -least ? std::min(rates[i], 0.0)
                                               : 0.0;
        });
    }

 private:
    /// Means of 2r + 1 samples along an axis; beyond the border the last sample goes on.
    void averageAlong(std::size_t axis, std::ptrdiff_t stride, std::ptrdiff_t count, Stretch stretch) {
        const std::ptrdiff_t size = sizes_[axis], radius = radius_;
        std::vector<double> line(static_cast<std::size_t>(size));
        for (std::ptrdiff_t first = 0; first < count; ++first) {
            stretch.step();
            if (first / stride % size != 0) continue;
            double* const values = mean_.data() + first;
            const auto at = [&](std::ptrdiff_t i) {
                return line[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(i, 0, size - 1))];
            };
            for (std::ptrdiff_t i = 0; i < size; ++i) line[static_cast<std::size_t>(i)] = values[i * stride];
            for (std::ptrdiff_t i = 0; i < size; ++i) {
                double sum = 0;
                for (std::ptrdiff_t k = -radius; k <= radius; ++k) sum += at(i + k);
                values[i * stride] = sum / static_cast<double>(2 * radius + 1);
            }
            stretch.step(line.size());
        }
    }

    Sizes sizes_;
    int radius_;
    double reach_;
    std::vector<double> mean_;
};

}  // namespace lset::detail
