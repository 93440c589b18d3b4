#include <cmath>
#include <cstddef>
#include <vector>

#include "quorbin2d/extraction/band_cells.h"
#include "quorbin2d/extraction/segment_distance.h"

using namespace lset::detail;

namespace {

/// The nearest segment of a cell to a grid point: its squared distance, negative where the point is on its
/// left.
double signedSquare(const std::vector<MeasuredSegment>& segments, const brin::Vec2<double>& point,
                    double& square) {
    square = 1e11;
    bool onLeft = false;
    for (const MeasuredSegment& segment : segments) {
        const double d = segment.squaredDistance(point);
        if (square > d) {
            square = d;
            onLeft = segment.hasOnLeft(point);
        }
    }
    return onLeft ? -square : square;
}

}  // namespace

void FastLevelSet2D::ensureSignedDistance() {
    const double hx = getXSpace();
    const double furthest = 9 * hx * hx;
    withBandReader(*this, work(), [&](auto& band, BandWorkspace<2>& work) {
        std::vector<PointAnd<double>>& reached = work.result;  // with signed squares
        reached.clear();
        constexpr std::size_t kNone = static_cast<std::size_t>(-1);
        TiledPoints<2> tiles;
        std::vector<std::size_t> position;  // among the reached, by number
        std::vector<MeasuredSegment> segments;
        const auto reach = [&](int x, int y, double signedValue, double square) {
            const auto number = static_cast<std::size_t>(tiles.number({x, y}));
            if (position.size() < tiles.size()) position.resize(tiles.size(), kNone);
            if (position[number] == kNone) {
                position[number] = reached.size();
                reached.push_back({x, y, signedValue});
            } else if (double& known = reached[position[number]].value; std::abs(known) > square) {
                known = signedValue;
            }
        };
        forEachBandCell<CornerOrder::kRightDiagonalAbove>(
            band, [&](const PointAnd<double>& corner, const auto&, const auto& cell, int caseOfCell) {
                segments.clear();
                forEachSegment(caseOfCell, [&](int from, int to) {
                    const brin::Vec2<double> start = cell.on(from);
                    const brin::Vec2<double> end = cell.on(to);
                    segments.emplace_back(start, end);
                });
                for (int down = -2; down <= 3; ++down)
                    for (int along = -2; along <= 3; ++along) {
                        const int x = stepped(corner.x, along), y = stepped(corner.y, down);
                        double square;
                        const double value = signedSquare(segments, {double(x), double(y)}, square);
                        if (square < furthest) reach(x, y, value, square);
                    }
            });
        for (PointAnd<double>& point : reached) {
            const double distance = std::sqrt(std::abs(point.value));
            point.value = point.value < 0 ? -distance : distance;
        }
        replacePoints<2>(values_, reached, band.entries());
    });
}
