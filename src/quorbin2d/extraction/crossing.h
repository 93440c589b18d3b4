#pragma once

#include <cmath>

#include "brin/vec.h"

namespace lset::detail {

/// Where the straight line from a (value fa) to b (value fb) is zero. The parameter is measured from a, so
/// from the other end the last bits may differ. It is not clamped.
inline brin::Vec2<double> zeroCrossing(brin::Vec2<double> a, double fa, brin::Vec2<double> b, double fb) {
    const double difference = fb - fa;
    const double t = 1e-16 > std::abs(difference) ? 0.5 : -fa / difference;
    return (1 - t) * a + t * b;
}

}  // namespace lset::detail
