#pragma once

#include <cmath>

#include "common/states.h"

namespace lset::detail {

/// The value of a point and those of its four neighbours; one that is missing is equal to the point's own.
struct Cross2D {
    double here, up, left, down, right;
};

/// Distance of a point from the interface by the crossings of its four grid edges. A pair of crossings on
/// different axes gives the distance to the line through both; single crossings are candidates always.
inline double firstDistance(const Cross2D& value, double hx, double hy) {
    const bool inside = value.here <= 0;
    const auto crosses = [&](double neighbour) { return (neighbour <= 0) != inside; };
    const bool right = crosses(value.right), up = crosses(value.up);
    const bool down = crosses(value.down), left = crosses(value.left);
    const auto crossing = [&](double neighbour, double h) {
        return (-value.here / (neighbour - value.here)) * h;
    };
    const double r = crossing(value.right, hx), u = crossing(value.up, hy);
    const double d = crossing(value.down, hy), l = crossing(value.left, hx);

    const auto toLine = [](double h, double v) { return 1.0 / std::sqrt(1.0 / (h * h) + 1.0 / (v * v)); };
    RunningMin nearest;
    if (up && right) nearest.offer(toLine(r, u));
    if (up && left) nearest.offer(toLine(l, u));
    if (down && left) nearest.offer(toLine(l, d));
    if (down && right) nearest.offer(toLine(r, d));
    if (right) nearest.offer(r);
    if (up) nearest.offer(u);
    if (down) nearest.offer(d);
    if (left) nearest.offer(l);
    return nearest.best;
}

/// The same for a point of a dense grid, read through a reader.
template <class Reader>
double firstDistanceOf(const Reader& field, int x, int y) {
    Cross2D value{};
    value.here = field.get(x, y);
    value.up = y < field.height() - 1 ? field.get(x, y + 1) : value.here;
    value.left = x > 0 ? field.get(x - 1, y) : value.here;
    value.down = y > 0 ? field.get(x, y - 1) : value.here;
    value.right = x < field.width() - 1 ? field.get(x + 1, y) : value.here;
    const double hx = field.hx();
    const double hy = field.hy();
    return firstDistance(value, hx, hy);
}

}  // namespace lset::detail
