#include <cstddef>
#include <unordered_map>

#include "quorbin2d/contour.h"

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
