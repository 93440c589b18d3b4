#include "outline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <unordered_map>

#include "../failure.h"

namespace quorbin::io {

namespace {

using Segments = std::vector<std::pair<int, int>>;

/// The chains that begin at a point where no segment ends.
std::vector<std::vector<int>> openChains(const Segments& segments) {
    std::unordered_map<int, int> next;
    std::unordered_map<int, bool> isEnd;
    for (const auto& [start, end] : segments) {
        next.emplace(start, end);
        isEnd[end] = true;
    }
    std::vector<std::vector<int>> chains;
    for (const auto& [start, end] : segments) {
        if (isEnd.count(start) > 0) continue;
        std::vector<int> chain = {start};
        for (auto step = next.find(start); step != next.end(); step = next.find(step->second))
            chain.push_back(step->second);
        chains.push_back(std::move(chain));
    }
    return chains;
}

}  // namespace

Contour traceClosed(const FullLevelSet2D& field) {
    const int width = field.getWidth(), height = field.getHeight();
    const std::ptrdiff_t stride = width;
    double largest = 1.0;
    std::for_each(field.data(), field.data() + stride * height,
                  [&](double v) { largest = std::max(largest, std::abs(v)); });
    FullLevelSet2D ringed;
    ringed.init(width + 2, height + 2, 1.0, 1.0);
    if (ringed.getWidth() != width + 2) throw Failure(kFailed, "the outline does not fit into memory");
    std::fill_n(ringed.data(), (stride + 2) * (height + 2), largest);
    for (std::ptrdiff_t y = 0; y < height; ++y)
        std::copy_n(field.data() + y * stride, width, ringed.data() + (y + 1) * (stride + 2) + 1);

    Contour contour;
    Segments segments;
    ringed.getLinesUnique(contour.points, segments);
    for (auto& p : contour.points)
        p = {std::clamp(p.x - 1, 0.0, width - 1.0), std::clamp(p.y - 1, 0.0, height - 1.0)};
    contour.polygons = getPolygons(contour.points, segments);
    return contour;
}

Contour traceOpen(const FullLevelSet2D& field) {
    Contour contour;
    Segments segments;
    field.getLinesUnique(contour.points, segments);
    contour.polygons = getPolygons(contour.points, segments);
    contour.openLines = openChains(segments);
    return contour;
}

Contour outlineOf(const FullLevelSet2D& field, bool open) {
    Contour contour = open ? traceOpen(field) : traceClosed(field);
    const auto sameSpot = [&](int a, int b) {
        return contour.points[static_cast<std::size_t>(a)] == contour.points[static_cast<std::size_t>(b)];
    };
    for (auto* lines : {&contour.polygons, &contour.openLines})
        for (auto& line : *lines) line.erase(std::unique(line.begin(), line.end(), sameSpot), line.end());
    for (auto& polygon : contour.polygons)
        while (polygon.size() > 1 && sameSpot(polygon.front(), polygon.back())) polygon.pop_back();
    const auto isSliver = [&](const std::vector<int>& polygon) {
        return quorbin::area(contour.points, polygon) == 0;
    };
    contour.polygons.erase(std::remove_if(contour.polygons.begin(), contour.polygons.end(), isSliver),
                           contour.polygons.end());
    contour.openLines.erase(std::remove_if(contour.openLines.begin(), contour.openLines.end(),
                                           [](const std::vector<int>& line) { return line.size() < 2; }),
                            contour.openLines.end());
    return contour;
}

}  // namespace quorbin::io
