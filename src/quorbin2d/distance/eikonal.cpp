#include "quorbin2d/eikonal.h"

#include "common/distance/eikonal_quadratic.h"

using lset::detail::EikonalQuadratic;

double quadraticFMM(double a, double b, double hx, double hy) { return EikonalQuadratic(hx, hy)(a, b); }

double quadraticFMM_2(double a, double b, double hx, double hy) { return quadraticFMM(a, b, hx, hy); }
