#include "quorbin2d/eikonal.h"

#include <cmath>

#include "common/states.h"
#include "quorbin2d/distance/eikonal_quadratic.h"

using namespace lset::detail;

double quadraticFMM(double a, double b, double hx, double hy) { return EikonalQuadratic2D(hx, hy)(a, b); }

double quadraticFMM_2(double a, double b, double hx, double hy) { return quadraticFMM(a, b, hx, hy); }

double quadraticFMM(double a, double b, double c, double hx, double hy, double hz) {
    const double wx = 1.0 / (hx * hx), wy = 1.0 / (hy * hy), wz = 1.0 / (hz * hz);
    const double square = wx + wy + wz;
    const double linear = (wx * a + wy * b + wz * c) * -2.0;
    const double constant = a * (wx * a) + b * (wy * b) + c * (wz * c) - 1.0;
    const double discriminant = linear * linear + constant * (square * -4.0);
    if (discriminant < 0) return kNoDistance;
    const double t = (std::sqrt(discriminant) - linear) / (square + square);
    return t < 0 ? kNoDistance : t;
}
