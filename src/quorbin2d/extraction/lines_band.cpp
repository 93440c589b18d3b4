#include <cstddef>
#include <vector>

#include "quorbin2d/extraction/band_cells.h"
#include "quorbin2d/extraction/band_points.h"

using namespace lset::detail;
using Points = std::vector<brin::Vec2<double>>;
using Segments = std::vector<std::pair<int, int>>;

namespace {

constexpr auto kOrder = CornerOrder::kRightAboveDiagonal;

}  // namespace

void FastLevelSet2D::getLines(Points& points, Segments& segments) {
    points.clear();
    segments.clear();
    withBandReader(*this, work(), [&](auto& band, BandWorkspace<2>&) {
        forEachBandCell<kOrder>(band, [&](const auto&, const auto&, const auto& cell, int caseOfCell) {
            forEachSegment(caseOfCell, [&](int from, int to) {
                points.push_back(cell.on(from));
                points.push_back(cell.on(to));
                const int count = static_cast<int>(points.size());
                segments.emplace_back(count - 2, count - 1);
            });
        });
    });
}

void FastLevelSet2D::getLinesUnique(Points& points, Segments& segments) {
    points.clear();
    segments.clear();
    withBandReader(*this, work(), [&](auto& band, BandWorkspace<2>&) {
        PointsByEdge shared;
        forEachBandCell<kOrder>(band,
                                [&](const auto&, const auto& corners, const auto& cell, int caseOfCell) {
                                    const auto indexOn = [&](int edge) {
                                        int& index = shared.at(band, corners, edge);
                                        if (index == PointsByEdge::kNone) {
                                            index = static_cast<int>(points.size());
                                            points.push_back(cell.on(edge));
                                        }
                                        return index;
                                    };
                                    forEachSegment(caseOfCell, [&](int from, int to) {
                                        const int start = indexOn(from);
                                        const int end = indexOn(to);
                                        segments.emplace_back(start, end);
                                    });
                                });
    });
}
