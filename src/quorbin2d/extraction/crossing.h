#pragma once

#include <cmath>

#include "brin/vec.h"

namespace lset::detail {

/// The part of the way from a value fa to a value fb at which the straight line is zero; not clamped.
inline double crossingParameter(double fa, double fb) {
    const double difference = fb - fa;
    return 1e-16 > std::abs(difference) ? 0.5 : -fa / difference;
}

/// Where the straight line from a (value fa) to b (value fb) is zero. The parameter is measured from a, so
/// from the other end the last bits may differ.
inline brin::Vec2<double> zeroCrossing(brin::Vec2<double> a, double fa, brin::Vec2<double> b, double fb) {
    const double t = crossingParameter(fa, fb);
    return (1 - t) * a + t * b;
}

/// The same for samples that may not be finite: beside such a one, not-a-number included, the crossing is at
/// the finite sample, and between two of them at the midpoint.
inline brin::Vec2<double> crossingBetween(brin::Vec2<double> a, double fa, brin::Vec2<double> b, double fb) {
    if (std::isfinite(fa) && std::isfinite(fb)) return zeroCrossing(a, fa, b, fb);
    if (std::isfinite(fa)) return a;
    if (std::isfinite(fb)) return b;
    return 0.5 * (a + b);
}

}  // namespace lset::detail
