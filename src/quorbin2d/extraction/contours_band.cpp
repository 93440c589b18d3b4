#include <algorithm>
#include <cstddef>
#include <tuple>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/extraction/band_cells.h"
#include "quorbin2d/extraction/band_points.h"
#include "quorbin2d/extraction/nested_rings.h"

using namespace lset::detail;

namespace {

/// The edges of a cell that lie along x, and their left corners.
constexpr bool isAlongX(int edge) { return edge % 2 == 0; }
constexpr int leftCorner(int edge) { return edge == 0 ? 0 : 3; }

/// A crossing of a row with its column, by which it is put in order.
struct PlacedCrossing {
    RingTrace::RowCrossing crossing;
    int column;
};

template <class Reader>
RingTrace trace(Reader& band, const Stretch& stretch) {
    RingTrace trace;
    Stretch rest = stretch.part(0, 0.8);
    rest.expect(band.entries().size());
    PointsByEdge shared;
    std::vector<PlacedCrossing> placed;
    forEachWholeCell<CornerOrder::kRightAboveDiagonal>(
        band, [&](const PointAnd<double>& lowerLeft, const auto& corners, const double(&values)[4]) {
            rest.step();
            bool isOutside[4];
            for (int k = 0; k < 4; ++k) isOutside[k] = !(values[k] <= 0);
            const auto corner = [&](int k) {
                return brin::Vec2<double>(double(lowerLeft.x) + kSquareX[k],
                                          double(lowerLeft.y) + kSquareY[k]);
            };
            const auto pointOn = [&](int edge) {
                int& index = shared.at(band, corners, edge);
                if (index != PointsByEdge::kNone) return index;
                index = static_cast<int>(trace.points.size());
                const int end = (edge + 1) % 4;
                trace.points.push_back(crossingBetween(corner(edge), values[edge], corner(end), values[end]));
                if (isAlongX(edge)) {
                    const int left = leftCorner(edge);
                    placed.push_back(
                        {{index, stepped(lowerLeft.y, kSquareY[left]), isOutside[left]}, lowerLeft.x});
                }
                return index;
            };
            forEachSegment(cellCase(isOutside[0], isOutside[1], isOutside[2], isOutside[3]),
                           [&](int from, int to) {
                               const int start = pointOn(from);
                               const int end = pointOn(to);
                               trace.segments.emplace_back(start, end);
                           });
        });
    const auto before = [](const PlacedCrossing& a, const PlacedCrossing& b) {
        return std::tie(a.crossing.row, a.column) < std::tie(b.crossing.row, b.column);
    };
    sortWatched(placed, before, stretch.part(0.8, 1));
    for (const PlacedCrossing& p : placed) trace.rowCrossings.push_back(p.crossing);
    return trace;
}

}  // namespace

std::optional<std::vector<quorbin::Polygon>> quorbin::contours(const FastLevelSet2D& band,
                                                               const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) {
        auto& notWritten = const_cast<FastLevelSet2D&>(band);  // readers can write, this does not
        BandWorkspace<2> work;
        RingTrace traced = withBandReader(
            notWritten, work, [&](auto& reader, auto&) { return trace(reader, whole.part(0.2, 0.6)); },
            whole.part(0, 0.2));
        const double hx = band.getXSpace();
        const double hy = band.getYSpace();
        return nestedRings(traced, hx, hy, whole.part(0.6, 1));
    });
}

std::vector<quorbin::Polygon> quorbin::contours(const FastLevelSet2D& band) {
    return *contours(band, Progress());
}
