#include <algorithm>
#include <cstddef>
#include <tuple>
#include <vector>

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
RingTrace trace(Reader& band) {
    RingTrace trace;
    PointsByEdge shared;
    std::vector<PlacedCrossing> placed;
    forEachWholeCell<CornerOrder::kRightAboveDiagonal>(
        band, [&](const PointAnd<double>& lowerLeft, const auto& corners, const double(&values)[4]) {
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
    std::sort(placed.begin(), placed.end(), [](const PlacedCrossing& a, const PlacedCrossing& b) {
        return std::tie(a.crossing.row, a.column) < std::tie(b.crossing.row, b.column);
    });
    for (const PlacedCrossing& p : placed) trace.rowCrossings.push_back(p.crossing);
    return trace;
}

}  // namespace

std::vector<quorbin::Polygon> quorbin::contours(const FastLevelSet2D& band) {
    auto& notWritten = const_cast<FastLevelSet2D&>(band);  // readers can write, this does not
    BandWorkspace<2> work;
    RingTrace traced = withBandReader(notWritten, work, [](auto& reader, auto&) { return trace(reader); });
    const double hx = band.getXSpace();
    const double hy = band.getYSpace();
    return nestedRings(traced, hx, hy);
}
