#include "quorbin2d/motion/reflecting_laplacian.h"

#include <algorithm>
#include <cmath>

namespace lset::detail {

ReflectingLaplacian::ReflectingLaplacian(int width, int height, double wx, double wy)
    : width_(static_cast<std::size_t>(width)),
      height_(static_cast<std::size_t>(height)),
      wy_(wy),
      alongX_(width) {
    constexpr double kPi = 3.14159265358979323846;
    std::vector<double> diagonal(width_);
    for (std::size_t k = 0; k < width_; ++k) {
        const double sine =
            width_ > 1 ? std::sin(kPi * static_cast<double>(k) / (2.0 * static_cast<double>(width_ - 1))) : 0;
        diagonal[k] = 1 + 4 * wx * (sine * sine) + 2 * wy;
    }
    // The first row and the last have their one neighbour twice.
    const auto pivotsAfter = [&](const std::vector<double>& previous, double weights) {
        std::vector<double> inverse(width_);
        for (std::size_t k = 0; k < width_; ++k) inverse[k] = 1 / (diagonal[k] - weights * previous[k]);
        return inverse;
    };
    const std::vector<double> none(width_);
    inversePivots_.push_back(pivotsAfter(none, 0));
    for (std::size_t y = 1; y + 1 < height_; ++y) {
        std::vector<double> next = pivotsAfter(inversePivots_.back(), y == 1 ? 2 * wy * wy : wy * wy);
        if (next == inversePivots_.back()) break;
        inversePivots_.push_back(std::move(next));
    }
    if (height_ > 1)
        lastInversePivots_ =
            pivotsAfter(inversePivots(height_ - 2), height_ == 2 ? 4 * wy * wy : 2 * wy * wy);
}

const std::vector<double>& ReflectingLaplacian::inversePivots(std::size_t y) const {
    return y > 0 && y + 1 == height_ ? lastInversePivots_
                                     : inversePivots_[std::min(y, inversePivots_.size() - 1)];
}

void ReflectingLaplacian::solve(double* values) {
    transformRows(values, 1);
    eliminateAlongY(values);
    transformRows(values, width_ > 1 ? 1 / (2.0 * static_cast<double>(width_ - 1)) : 1);
}

void ReflectingLaplacian::transformRows(double* values, double scale) {
    for (std::size_t y = 0; y < height_; y += 2) {
        double* const row = values + y * width_;
        const bool isPair = y + 1 < height_;
        alongX_.transform(row, isPair ? row + width_ : nullptr);
        if (scale != 1)
            std::for_each_n(row, (isPair ? 2 : 1) * width_, [=](double& value) { value *= scale; });
    }
}

void ReflectingLaplacian::eliminateAlongY(double* values) const {
    for (std::size_t y = 1; y < height_; ++y) {
        const double below = y + 1 == height_ ? 2 * wy_ : wy_;
        const double* const inverse = inversePivots(y - 1).data();
        const double* const previous = values + (y - 1) * width_;
        double* const row = values + y * width_;
        for (std::size_t k = 0; k < width_; ++k) row[k] += below * inverse[k] * previous[k];
    }
    for (std::size_t y = height_; y-- > 0;) {
        const double above = y + 1 == height_ ? 0 : y == 0 ? 2 * wy_ : wy_;
        const double* const inverse = inversePivots(y).data();
        double* const row = values + y * width_;
        const double* const next = above != 0 ? row + width_ : row;
        for (std::size_t k = 0; k < width_; ++k) row[k] = (row[k] + above * next[k]) * inverse[k];
    }
}

}  // namespace lset::detail
