#include <vector>

#include "common/states.h"
#include "quorbin2d/differences/band_readers.h"

using namespace lset::detail;

namespace {

/// Bands move by less than the stability limit.
constexpr double kPartOfLimit = 0.95;

}  // namespace

void FastLevelSet2D::moveAlongCurvature() {
    const double hx = getXSpace(), hy = getYSpace();
    const double dt = (1.0 / (2.0 / (hx * hx) + 2.0 / (hy * hy))) * kPartOfLimit;
    withBandReader(*this, *work_, [&](const auto& band, BandWorkspace2D& work) {
        std::vector<PointAnd<double>>& moved = work.result;
        moved.clear();
        band.forEach([&](const PointAnd<double>& point, auto place) {
            if (isInterior(band, place))
                moved.push_back({point.x, point.y, dt * band.curvature(place) + point.value});
        });
        replacePoints(values_, moved);
    });
}

void FastLevelSet2D::moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f) {
    struct Move {
        int x, y;
        double* value;  // null for the stored one, which may lie elsewhere by the time
        double rate;
    };
    std::vector<Move> moves;
    double smallestLimit = kNoDistance;
    // Whatever the type, neighbours are asked for one by one: the callback may add points.
    const VirtualBandReader2D band(*this);
    moves.reserve(band.size());
    band.forEach([&](const PointAnd<double>& point, VirtualBandReader2D::Place place) {
        if (!isInterior(band, place)) return;
        double limit = 0.0;
        const double rate = f(this, point.x, point.y, &limit);
        if (limit < smallestLimit) smallestLimit = limit;
        double* const value = &(*this)(point.x, point.y);
        moves.push_back({point.x, point.y, value == values_.find(point.x, point.y) ? nullptr : value, rate});
    });
    const double dt = smallestLimit * kPartOfLimit;
    for (const Move& move : moves) {
        double* const value = move.value != nullptr ? move.value : values_.find(move.x, move.y);
        if (value != nullptr) *value = dt * move.rate + *value;  // null if the callback has taken it away
    }
}
