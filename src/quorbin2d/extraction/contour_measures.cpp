#include <cmath>
#include <cstddef>

#include "quorbin2d/contours.h"

namespace {

using Point = brin::Vec2<double>;

/// at(k) gives the points, from 0 to count − 1.
template <class At>
double areaOf(std::size_t count, At at) {
    if (count == 0) return 0.0;
    // Measured from one of its points, so that a small polygon far out loses no digits.
    const Point origin = at(0);
    double twice = 0.0;
    for (std::size_t k = 2; k < count; ++k) {
        const Point a = at(k - 1) - origin, b = at(k) - origin;
        twice += a.x * b.y - a.y * b.x;
    }
    return 0.5 * twice;
}

template <class At>
double lengthOf(std::size_t count, At at, double xSpace, double ySpace) {
    double sum = 0.0;
    for (std::size_t k = 0; k < count; ++k) {
        const Point along = at((k + 1) % count) - at(k);
        sum += std::hypot(along.x * xSpace, along.y * ySpace);
    }
    return sum;
}

/// The points of a polygon of indices, by their places in it.
struct Indexed {
    const std::vector<Point>& points;
    const std::vector<int>& polygon;
    Point operator()(std::size_t k) const { return points[static_cast<std::size_t>(polygon[k])]; }
};

}  // namespace

namespace quorbin {

double area(const Ring& ring) {
    return areaOf(ring.size(), [&](std::size_t k) { return ring[k]; });
}

double area(const Polygon& polygon) {
    double sum = area(polygon.outline);
    for (const Ring& hole : polygon.holes) sum += area(hole);
    return sum;
}

double length(const Ring& ring) {
    return lengthOf(
        ring.size(), [&](std::size_t k) { return ring[k]; }, 1.0, 1.0);
}

double area(const std::vector<Point>& points, const std::vector<int>& polygon, double xSpace, double ySpace) {
    return areaOf(polygon.size(), Indexed{points, polygon}) * xSpace * ySpace;
}

double length(const std::vector<Point>& points, const std::vector<int>& polygon, double xSpace,
              double ySpace) {
    return lengthOf(polygon.size(), Indexed{points, polygon}, xSpace, ySpace);
}

}  // namespace quorbin
