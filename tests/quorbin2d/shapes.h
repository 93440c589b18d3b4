#pragma once

#include <cmath>
#include <limits>

#include "quorbin2d/dense_support.h"

constexpr double kPi = 3.141592653589793;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// A disc in world units.
struct Disc {
    double x, y, radius;
    double distance(double px, double py) const { return std::hypot(px - x, py - y) - radius; }
};

inline void fillDisc(FullLevelSet2D& grid, int width, int height, const Disc& disc, double hx = 1,
                     double hy = 1) {
    fill(
        grid, width, height, [&](int x, int y) { return disc.distance(x * hx, y * hy); }, hx, hy);
}
