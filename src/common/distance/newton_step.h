#pragma once

#include <cstddef>

#include "common/vector.h"

namespace lset::detail {

inline Symmetric<2> inverseOf(const Symmetric<2>& m) {
    const double scale = 1 / (m[0][0] * m[1][1] - m[0][1] * m[0][1]);
    return {{{scale * m[1][1], -scale * m[0][1]}, {-scale * m[0][1], scale * m[0][0]}}};
}
inline Symmetric<3> inverseOf(const Symmetric<3>& m) {
    const double a = m[1][1] * m[2][2] - m[1][2] * m[1][2], b = m[0][2] * m[1][2] - m[0][1] * m[2][2],
                 c = m[0][1] * m[1][2] - m[0][2] * m[1][1];
    const double scale = 1 / (m[0][0] * a + m[0][1] * b + m[0][2] * c);
    const double e = m[0][0] * m[2][2] - m[0][2] * m[0][2], f = m[0][1] * m[0][2] - m[0][0] * m[1][2],
                 g = m[0][0] * m[1][1] - m[0][1] * m[0][1];
    return {{{scale * a, scale * b, scale * c},
             {scale * b, scale * e, scale * f},
             {scale * c, scale * f, scale * g}}};
}

/// Solves (I + λH) δ + δλ ∇P = −(x + λ∇P), ∇P · δ = −P for δ, and moves λ by δλ: a step of Newton's method
/// for the point x, from p, of the zero level of P where p lies on the normal, x = −λ∇P. H are the second
/// derivatives of P.
template <std::size_t dimensions>
__attribute__((always_inline)) inline Vector<dimensions> newtonStep(const Vector<dimensions>& x, double value,
                                                                    const Vector<dimensions>& gradient,
                                                                    const Symmetric<dimensions>& hessian,
                                                                    double& lambda) {
    Symmetric<dimensions> matrix;
    for (std::size_t i = 0; i < dimensions; ++i)
        for (std::size_t j = 0; j < dimensions; ++j)
            matrix[i][j] = (i == j ? 1.0 : 0.0) + lambda * hessian[i][j];
    const Symmetric<dimensions> inverse = inverseOf(matrix);
    const Vector<dimensions> v = product(inverse, sum(x, lambda, gradient));
    const Vector<dimensions> w = product(inverse, gradient);
    const double change = (value - dot(gradient, v)) / dot(gradient, w);
    lambda += change;
    return sum(scaled(v, -1), -change, w);
}

}  // namespace lset::detail
