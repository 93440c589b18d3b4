#pragma once

#include <cmath>

#include "common/distance/eikonal_quadratic.h"
#include "common/states.h"

namespace lset::detail {

/// The eikonal quadratic for neighbours on three axes, and for those on two, with what depends on the
/// spacings alone formed once. The former is guarded, the latter not; callers take a running minimum.
class EikonalQuadratics3D {
 public:
    EikonalQuadratics3D(double hx, double hy, double hz)
        : h_{hx, hy, hz},
          w_{1.0 / (hx * hx), 1.0 / (hy * hy), 1.0 / (hz * hz)},
          minusFourA_((w_[0] + w_[1] + w_[2]) * -4.0),
          twiceA_((w_[0] + w_[1] + w_[2]) + (w_[0] + w_[1] + w_[2])),
          pairs_{EikonalQuadratic(hx, hy), EikonalQuadratic(hx, hz), EikonalQuadratic(hy, hz)} {}

    double triple(double a, double b, double c) const {
        const double linear = (w_[0] * a + w_[1] * b + w_[2] * c) * -2.0;
        const double constant = a * (w_[0] * a) + b * (w_[1] * b) + c * (w_[2] * c) - 1.0;
        const double discriminant = linear * linear + constant * minusFourA_;
        if (discriminant < 0) return kNoDistance;
        const double t = (std::sqrt(discriminant) - linear) / twiceA_;
        return t < 0 ? kNoDistance : t;
    }

    /// Of neighbours on two axes, the lower one first.
    double pair(int lowerAxis, int higherAxis, double a, double b) const {
        return pairs_[lowerAxis + higherAxis - 1](a, b);
    }

    double single(int axis, double a) const { return a + h_[axis]; }

 private:
    double h_[3], w_[3];
    double minusFourA_, twiceA_;
    EikonalQuadratic pairs_[3];  // of the axes x y, x z, y z
};

}  // namespace lset::detail
