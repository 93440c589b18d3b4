#pragma once

#include <limits>

namespace lset::detail {

/// κ |∇φ| of first and second derivatives. It is at most as large as these, and 0 where the gradient is.
inline double curvatureTerm(double fx, double fy, double fxx, double fyy, double fxy) {
    const double xx = fx * fx, yy = fy * fy;
    return (fxx * yy + fyy * xx - 2 * (fx * fy) * fxy) / (xx + yy + std::numeric_limits<double>::min());
}

/// The same in space: the sum of the two principal curvatures.
inline double curvatureTerm(double fx, double fy, double fz, double fxx, double fyy, double fzz, double fxy,
                            double fxz, double fyz) {
    const double xx = fx * fx, yy = fy * fy, zz = fz * fz;
    const double mixed = (fx * fy) * fxy + (fx * fz) * fxz + (fy * fz) * fyz;
    return (fxx * (yy + zz) + fyy * (xx + zz) + fzz * (xx + yy) - 2 * mixed) /
           (xx + yy + zz + std::numeric_limits<double>::min());
}

}  // namespace lset::detail
