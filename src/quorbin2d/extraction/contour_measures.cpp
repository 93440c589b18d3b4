#include <cmath>
#include <cstddef>

#include "quorbin2d/contour.h"

double area(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& polygon, double xSpace,
            double ySpace) {
    if (polygon.empty()) return 0.0;
    const auto at = [&](std::size_t k) { return points[static_cast<std::size_t>(polygon[k])]; };
    // Measured from one of its points, so that a small polygon far out loses no digits.
    const brin::Vec2<double> origin = at(0);
    double twice = 0.0;
    for (std::size_t k = 2; k < polygon.size(); ++k) {
        const brin::Vec2<double> a = at(k - 1) - origin, b = at(k) - origin;
        twice += a.x * b.y - a.y * b.x;
    }
    return 0.5 * twice * xSpace * ySpace;
}

double length(const std::vector<brin::Vec2<double>>& points, const std::vector<int>& polygon, double xSpace,
              double ySpace) {
    double sum = 0.0;
    for (std::size_t k = 0; k < polygon.size(); ++k) {
        const auto& a = points[static_cast<std::size_t>(polygon[k])];
        const auto& b = points[static_cast<std::size_t>(polygon[(k + 1) % polygon.size()])];
        sum += std::hypot((b.x - a.x) * xSpace, (b.y - a.y) * ySpace);
    }
    return sum;
}
