#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "quorbin2d/contour.h"

namespace {

using Point = brin::Vec2<double>;

/// A contour point on one side of the grid, keyed so that ascending order runs counterclockwise.
using BorderPoint = std::pair<float, int>;
using Border = std::array<std::vector<BorderPoint>, 4>;  // left, bottom, right, top

Border collectBorder(const std::vector<Point>& points, int width, int height) {
    // Single precision and the margin take in crossings that rounding has put just inside the border.
    const double right = static_cast<double>(static_cast<float>(width - 1)) - 0.0001;
    const double top = static_cast<double>(static_cast<float>(height - 1)) - 0.0001;
    Border border;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& p = points[i];
        if (std::isnan(p.x) || std::isnan(p.y)) continue;
        const int index = static_cast<int>(i);
        if (p.x <= 0.0) border[0].emplace_back(static_cast<float>(-p.y), index);
        if (p.x >= right) border[2].emplace_back(static_cast<float>(p.y), index);
        if (p.y <= 0.0) border[1].emplace_back(static_cast<float>(p.x), index);
        if (p.y >= top) border[3].emplace_back(static_cast<float>(-p.x), index);
    }
    for (auto& side : border) std::sort(side.begin(), side.end());
    return border;
}

/// Whether the grid point just before a border point in counterclockwise order is outside. Points that no
/// single mirroring brings back into the grid count as inside.
bool comesFromOutside(const LevelSet2D& levelSet, const Point& p, float key, int width, int height) {
    const double x = key < 0 ? std::ceil(p.x) : std::floor(p.x);
    const double y = key < 0 ? std::ceil(p.y) : std::floor(p.y);
    const auto readable = [](double c, int n) { return std::abs(c) < 2.0 * n; };
    if (!readable(x, width) || !readable(y, height)) return false;
    return !(levelSet.get(static_cast<int>(x), static_cast<int>(y)) <= 0.0);
}

}  // namespace

void addBorderEdges(std::vector<Point>& points, std::vector<std::pair<int, int>>& segments,
                    LevelSet2D* levelSet) {
    const int width = levelSet->getWidth(), height = levelSet->getHeight();
    if (width < 1 || height < 1) return;
    const double lastX = width - 1, lastY = height - 1;
    const std::array<Point, 4> corners = {Point(0, 0), Point(lastX, 0), Point(lastX, lastY), Point(0, lastY)};
    const Border border = collectBorder(points, width, height);

    for (std::size_t side = 0; side < 4; ++side) {
        for (std::size_t k = 0; k < border[side].size(); ++k) {
            const auto [key, index] = border[side][k];
            const Point p = points[static_cast<std::size_t>(index)];
            if (!comesFromOutside(*levelSet, p, key, width, height)) continue;
            if (k + 1 < border[side].size()) {
                segments.emplace_back(index, border[side][k + 1].second);
                continue;
            }
            // Round the corners to the next side that the contour meets; at the latest that is this one
            // again.
            int last = index;
            for (std::size_t corner = side;; corner = (corner + 1) % 4) {
                const int added = static_cast<int>(points.size());
                points.push_back(corners[corner]);
                segments.emplace_back(last, added);
                last = added;
                const auto& nextSide = border[(corner + 1) % 4];
                if (!nextSide.empty()) {
                    segments.emplace_back(last, nextSide.front().second);
                    break;
                }
            }
        }
    }
}
