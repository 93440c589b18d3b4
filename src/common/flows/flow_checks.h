#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "common/vector.h"
#include "curvature_flow.h"

namespace lset::detail {

inline void checkCurvatureFlow(double time, const quorbin::CurvatureFlowOptions& options) {
    const auto isOutOfRange = [](double value) { return !(value >= 0) || std::isinf(value); };
    if (isOutOfRange(time))
        throw std::invalid_argument("the time of a flow must be a finite number, and at least 0");
    if (isOutOfRange(options.rate))
        throw std::invalid_argument("the rate must be a finite number, and at least 0");
    if (options.noiseRadius < 0) throw std::invalid_argument("the radius of noise must be at least 0");
    if (!(options.tolerance > 0) || std::isinf(options.tolerance))
        throw std::invalid_argument("the tolerance must be a finite number above 0");
    using Steps = quorbin::CurvatureFlowOptions::Steps;
    if ((options.noiseRadius > 0 || options.keepsSides) && options.steps == Steps::kLarge)
        throw std::invalid_argument("a radius of noise, and keeping sides, need explicit steps");
}

inline void checkBandFlow(const quorbin::CurvatureFlowOptions& options) {
    if (options.steps == quorbin::CurvatureFlowOptions::Steps::kLarge || options.keepsSize ||
        options.keepsSides || options.noiseRadius > 0)
        throw std::invalid_argument(
            "large steps, keeping size or sides, and a radius of noise are for dense grids");
}

/// Longest explicit step of φt = b κ |∇φ| that is stable.
template <std::size_t dimensions>
double longestExplicitStep(const Vector<dimensions>& h, double rate) {
    double sum = 0;
    for (const double spacing : h) sum += 2 / (spacing * spacing);
    return 1 / (rate * sum);
}

/// How many of them a time takes, at least one. A time that was meant as a number of them is not rounded up.
template <std::size_t dimensions>
double explicitSteps(double time, const Vector<dimensions>& h, double rate) {
    constexpr double kAllButRounding = 1 - 1e-12;
    return std::max(1.0, std::ceil(kAllButRounding * (time / longestExplicitStep(h, rate))));
}

}  // namespace lset::detail
