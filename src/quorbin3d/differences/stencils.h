#pragma once

#include "common/differences/divide.h"

/// Difference formulas on anything that reads a field by get(x, y, z), along axis 0 (x), 1 (y) or 2 (z). A
/// read is a statement: their order is fixed.
namespace lset::detail {

/// The seven-point Laplacian of a value and its neighbours; the overs divide by the squared spacings.
template <class OverX, class OverY, class OverZ>
double sevenPoint(double p, double xp, double xm, double yp, double ym, double zp, double zm, OverX overX,
                  OverY overY, OverZ overZ) {
    const double twice = 2.0 * p;
    return overX((xp + xm) - twice) + overY((yp + ym) - twice) + overZ((zp + zm) - twice);
}

template <class Reader>
double laplacian(const Reader& field, int x, int y, int z) {
    const double p = field.get(x, y, z);
    const double xp = field.get(x + 1, y, z);
    const double xm = field.get(x - 1, y, z);
    const double yp = field.get(x, y + 1, z);
    const double ym = field.get(x, y - 1, z);
    const double zp = field.get(x, y, z + 1);
    const double zm = field.get(x, y, z - 1);
    const double hx = field.hx(), hy = field.hy(), hz = field.hz();
    return sevenPoint(p, xp, xm, yp, ym, zp, zm, Divide{hx * hx}, Divide{hy * hy}, Divide{hz * hz});
}

template <int axis, class Reader>
double spacingOf(const Reader& field) {
    return axis == 0 ? field.hx() : axis == 1 ? field.hy() : field.hz();
}

/// The value a number of steps along an axis from a point.
template <int axis, class Reader>
double valueBeside(const Reader& field, int x, int y, int z, int steps) {
    return field.get(axis == 0 ? x + steps : x, axis == 1 ? y + steps : y, axis == 2 ? z + steps : z);
}

template <int axis, class Reader>
double backward(const Reader& field, int x, int y, int z) {
    const double here = field.get(x, y, z);
    const double before = valueBeside<axis>(field, x, y, z, -1);
    return (here - before) / spacingOf<axis>(field);
}

template <int axis, class Reader>
double forward(const Reader& field, int x, int y, int z) {
    const double after = valueBeside<axis>(field, x, y, z, 1);
    const double here = field.get(x, y, z);
    return (after - here) / spacingOf<axis>(field);
}

/// Without a thought for faces.
template <int axis, class Reader>
double centralInside(const Reader& field, int x, int y, int z) {
    const double after = valueBeside<axis>(field, x, y, z, 1);
    const double before = valueBeside<axis>(field, x, y, z, -1);
    const double h = spacingOf<axis>(field);
    return (after - before) / (h + h);
}

template <int axis, class Reader>
double central(const Reader& field, int x, int y, int z) {
    const int c = axis == 0 ? x : axis == 1 ? y : z;
    const int points = axis == 0 ? field.width() : axis == 1 ? field.height() : field.depth();
    if (c == 0) return forward<axis>(field, x, y, z);
    if (c == points - 1) return backward<axis>(field, x, y, z);
    return centralInside<axis>(field, x, y, z);
}

}  // namespace lset::detail
