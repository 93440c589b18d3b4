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

}  // namespace lset::detail
