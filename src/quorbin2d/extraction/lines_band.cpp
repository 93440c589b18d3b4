#include <cstddef>
#include <vector>

#include "quorbin2d/extraction/band_cells.h"

using namespace lset::detail;
using Points = std::vector<brin::Vec2<double>>;
using Segments = std::vector<std::pair<int, int>>;

namespace {

constexpr auto kOrder = CornerOrder::kRightAboveDiagonal;

/// The index of the point on each grid edge, by the number of the grid point where the edge begins (left or below).
class PointsByEdge {
 public:
    static constexpr int kNone = -1;

    template <class Reader, class Place>
    int& at(Reader& band, const Place (&corners)[4], int edge) {
        // Edges 0 and 2 lie along x, 1 and 3 along y; they begin at corners 0, 3, 1 and 0.
        static constexpr int kBegin[4] = {0, 1, 3, 0};
        const auto number = static_cast<std::size_t>(band.number(corners[kBegin[edge]]));
        if (indices_.size() < 2 * band.tiles().size()) indices_.resize(2 * band.tiles().size(), kNone);
        return indices_[2 * number + (edge % 2 == 0 ? 0 : 1)];
    }

 private:
    std::vector<int> indices_;
};

}  // namespace

void FastLevelSet2D::getLines(Points& points, Segments& segments) {
    points.clear();
    segments.clear();
    withBandReader(*this, *work_, [&](auto& band, BandWorkspace<2>&) {
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
    withBandReader(*this, *work_, [&](auto& band, BandWorkspace<2>&) {
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
