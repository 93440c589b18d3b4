#include <cmath>
#include <cstddef>
#include <unordered_map>

#include "quorbin2d/contour.h"
#include "quorbin2d/extraction/segment_distance.h"

std::vector<std::vector<int>> getPolygons(std::vector<brin::Vec2<double>>&,
                                          std::vector<std::pair<int, int>>& segments) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    const std::size_t count = segments.size();
    std::unordered_map<int, std::size_t> firstAt;
    firstAt.reserve(count);
    for (std::size_t i = 0; i < count; ++i) firstAt.emplace(segments[i].first, i);
    std::vector<std::size_t> next(count, kNone);
    for (std::size_t i = 0; i < count; ++i) {
        const auto found = firstAt.find(segments[i].second);
        if (found != firstAt.end()) next[i] = found->second;
    }

    std::vector<std::vector<int>> polygons;
    std::vector<bool> used(count, false);
    for (std::size_t i = 0; i < count; ++i) {
        if (used[i]) continue;
        std::vector<int> polygon;
        std::size_t c = i;
        do {
            const auto [start, end] = segments[c];
            if (start != end) polygon.push_back(start);
            used[c] = true;
            c = next[c];
        } while (c != kNone && !used[c]);
        if (c == i && polygon.size() >= 3) polygons.push_back(std::move(polygon));
    }
    return polygons;
}

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

double distToSeg(brin::Vec2<double>& a, brin::Vec2<double>& b, brin::Vec2<double>& p, int* side) {
    const lset::detail::MeasuredSegment segment(a, b);
    if (side != nullptr) *side = segment.hasOnLeft(p) ? 1 : 0;
    return segment.squaredDistance(p);
}
