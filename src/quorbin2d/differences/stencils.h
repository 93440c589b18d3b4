#pragma once

#include "common/differences/divide.h"

/// Difference formulas on anything that reads a field by get(x, y). A read is a statement: their order is
/// fixed.
namespace lset::detail {

/// The five-point Laplacian of a value and its neighbours, given twice the negated value; overX and overY
/// divide by the squared spacings.
template <class Over>
double fivePoint(double minusTwice, double xp, double xm, double yp, double ym, Over overX, Over overY) {
    return overX((xp + minusTwice) + xm) + overY((minusTwice + yp) + ym);
}

template <class Reader>
double laplacian(const Reader& field, int x, int y) {
    const double c = field.get(x, y);
    const double xp = field.get(x + 1, y);
    const double xm = field.get(x - 1, y);
    const double yp = field.get(x, y + 1);
    const double ym = field.get(x, y - 1);
    const double hx = field.hx(), hy = field.hy();
    return fivePoint(c * -2.0, xp, xm, yp, ym, Divide{hx * hx}, Divide{hy * hy});
}

// Along x and y alike; the deferrals go through the reader, where a subclass may have overridden them.

template <class Reader>
double dxMinus(const Reader& field, int x, int y) {
    if (x == 0) return field.dxPlus(0, y);
    const double here = field.get(x, y);
    const double left = field.get(x - 1, y);
    return (here - left) / field.hx();
}

template <class Reader>
double dxPlus(const Reader& field, int x, int y) {
    if (x == field.width() - 1) return field.dxMinus(x, y);
    const double right = field.get(x + 1, y);
    const double here = field.get(x, y);
    return (right - here) / field.hx();
}

template <class Reader>
double dxCentral(const Reader& field, int x, int y) {
    if (x == 0) return field.dxPlus(0, y);
    if (x == field.width() - 1) return field.dxMinus(x, y);
    const double right = field.get(x + 1, y);
    const double left = field.get(x - 1, y);
    const double hx = field.hx();
    return (right - left) / (hx + hx);
}

template <class Reader>
double dyMinus(const Reader& field, int x, int y) {
    if (y == 0) return field.dyPlus(x, 0);
    const double here = field.get(x, y);
    const double below = field.get(x, y - 1);
    return (here - below) / field.hy();
}

template <class Reader>
double dyPlus(const Reader& field, int x, int y) {
    if (y == field.height() - 1) return field.dyMinus(x, y);
    const double above = field.get(x, y + 1);
    const double here = field.get(x, y);
    return (above - here) / field.hy();
}

template <class Reader>
double dyCentral(const Reader& field, int x, int y) {
    if (y == 0) return field.dyPlus(x, 0);
    if (y == field.height() - 1) return field.dyMinus(x, y);
    const double above = field.get(x, y + 1);
    const double below = field.get(x, y - 1);
    const double hy = field.hy();
    return (above - below) / (hy + hy);
}

template <class Reader>
double dxUpwind(const Reader& field, int x, int y, double speed) {
    return speed > 0 ? field.dxMinus(x, y) : field.dxPlus(x, y);
}

template <class Reader>
double dyUpwind(const Reader& field, int x, int y, double speed) {
    return speed > 0 ? field.dyMinus(x, y) : field.dyPlus(x, y);
}

}  // namespace lset::detail
