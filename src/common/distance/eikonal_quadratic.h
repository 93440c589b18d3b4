#pragma once

#include <cmath>

namespace lset::detail {

/// Solves (t − a)²/hx² + (t − b)²/hy² = 1 for the larger t, with what depends on the spacings alone formed
/// once. No guard: not-a-number without a real root, and t may lie below a or b. Callers take a running
/// minimum.
class EikonalQuadratic {
 public:
    EikonalQuadratic(double hx, double hy)
        : wx_(1.0 / (hx * hx)),
          wy_(1.0 / (hy * hy)),
          minusFourA_((wx_ + wy_) * -4.0),
          twiceA_((wx_ + wy_) + (wx_ + wy_)) {}

    double operator()(double a, double b) const {
        const double linear = (wx_ * a + wy_ * b) * -2.0;
        const double c = a * (wx_ * a) + b * (wy_ * b) - 1.0;
        const double discriminant = linear * linear + c * minusFourA_;
        return (std::sqrt(discriminant) - linear) / twiceA_;
    }

 private:
    double wx_, wy_, minusFourA_, twiceA_;
};

}  // namespace lset::detail
