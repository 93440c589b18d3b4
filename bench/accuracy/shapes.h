#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace accuracy {

constexpr double kPi = 3.14159265358979323846;

/// A point or a vector; in 2D its last coordinate is 0.
using Point = std::array<double, 3>;

/// A field, negative inside, as a function of the place in world units.
using Shape = std::function<double(const Point&)>;

inline Point operator-(const Point& a, const Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
inline double length(const Point& a) { return std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]); }

/// The middle of a grid of n points an axis, beside all samples and lines of symmetry of the grid: an answer
/// that only holds for symmetric samples is none.
inline Point middle(int n, int dimensions) {
    return {0.5 * n + 0.37, 0.5 * n - 0.21, dimensions == 3 ? 0.5 * n + 0.11 : 0};
}

/// A disc or a ball, as exact distance.
inline Shape ballAt(const Point& centre, double radius) {
    return [=](const Point& p) { return length(p - centre) - radius; };
}

/// The same as (r² − R²) / (2R), whose gradient is 1 at the interface only; times a factor.
inline Shape paraboloidAt(const Point& centre, double radius, double factor = 1) {
    return [=](const Point& p) {
        const double r = length(p - centre);
        return factor * (r * r - radius * radius) / (2 * radius);
    };
}

/// A box as exact distance, by the vector from its middle.
inline double boxDistance(const Point& d, const Point& halfSides) {
    Point beyond{};
    double largest = -HUGE_VAL;
    for (std::size_t i = 0; i < 3; ++i) {
        const double b = std::abs(d[i]) - halfSides[i];
        beyond[i] = std::max(b, 0.0);
        largest = std::max(largest, b);
    }
    return length(beyond) + std::min(largest, 0.0);
}

/// A square or a cube. Along an axis that all points agree in it has no end.
inline Shape cubeAt(const Point& centre, double halfSide) {
    return [=](const Point& p) { return boxDistance(p - centre, {halfSide, halfSide, halfSide}); };
}

/// Five points, r = radius + depth sin 5θ; a field that is no distance.
inline Shape starAt(const Point& centre, double radius, double depth) {
    return [=](const Point& p) {
        const Point d = p - centre;
        return length(d) - radius - depth * std::sin(5 * std::atan2(d[1], d[0]));
    };
}

/// An ellipse or ellipsoid as b/2 (x²/a² + y²/b² + … − 1), b the smallest half axis.
inline Shape ellipsoidAt(const Point& centre, const Point& halfAxes) {
    return [=](const Point& p) {
        const Point d = p - centre;
        double sum = -1;
        for (std::size_t i = 0; i < 3; ++i) sum += d[i] * d[i] / (halfAxes[i] * halfAxes[i]);
        return std::min({halfAxes[0], halfAxes[1], halfAxes[2]}) / 2 * sum;
    };
}

/// Distance of a point outside an ellipsoid: the nearest point of the surface is a²d / (t + a²) in each
/// coordinate, with the t ≥ 0 at which that lies on the surface, found by bisection.
inline double distanceOutsideEllipsoid(const Point& d, const Point& halfAxes) {
    double low = 0, high = 0;
    for (std::size_t i = 0; i < 3; ++i) high += halfAxes[i] * std::abs(d[i]);
    const auto foot = [&](double t, std::size_t i) {
        return halfAxes[i] * halfAxes[i] * d[i] / (t + halfAxes[i] * halfAxes[i]);
    };
    for (int round = 0; round < 100; ++round) {
        const double t = 0.5 * (low + high);
        double sum = 0;
        for (std::size_t i = 0; i < 3; ++i) sum += std::pow(foot(t, i) / halfAxes[i], 2);
        (sum > 1 ? low : high) = t;
    }
    const double t = 0.5 * (low + high);
    return length({d[0] - foot(t, 0), d[1] - foot(t, 1), d[2] - foot(t, 2)});
}

/// Two balls with a neck between them, along x.
inline Shape dumbbellAt(const Point& centre, double halfLength, double ballRadius, double neckRadius) {
    return [=](const Point& p) {
        const Point d = p - centre;
        const double toBall = length({std::abs(d[0]) - halfLength, d[1], d[2]}) - ballRadius;
        const double toNeck = std::max(std::hypot(d[1], d[2]) - neckRadius, std::abs(d[0]) - halfLength);
        return std::min(toBall, toNeck);
    };
}

}  // namespace accuracy
