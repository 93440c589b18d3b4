#pragma once

namespace lset::detail {

/// State of a grid point during a march.
enum State : signed char { kInside = -1, kFar = 0, kOutside = 1, kTrial = 2 };

/// The distance of a point that has none yet.
constexpr double kNoDistance = 1e11;

/// Smallest of the candidates offered. The test is strict, so of equal candidates the first stays and a
/// not-a-number never wins.
struct RunningMin {
    double best = kNoDistance;

    void offer(double candidate) {
        if (best > candidate) best = candidate;
    }
};

}  // namespace lset::detail
