#include <cmath>
#include <cstddef>
#include <vector>

#include "quorbin2d/differences/band_readers.h"

using namespace lset::detail;

namespace {

/// An interior point of the iterate: where its value and those of its neighbours lie, and its old value.
struct Interior {
    int x, y;
    std::size_t here, east, west, north, south;
    double old;
};

/// The values of all stored points, and those of them that a step moves.
struct Iterate {
    std::vector<PointAnd<double>> points;
    std::vector<Interior> interior;
};

template <class Reader>
Iterate makeIterate(Reader& band) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    Iterate iterate;
    std::vector<std::size_t> position;  // among the points, by number
    // A point that only a subclass says is there comes in with 0.
    const auto at = [&](auto place, double value) {
        const int number = band.number(place);
        if (position.size() < band.tiles().size()) position.resize(band.tiles().size(), kNone);
        std::size_t& found = position[static_cast<std::size_t>(number)];
        if (found == kNone) {
            found = iterate.points.size();
            const auto [x, y] = band.tiles().point(number);
            iterate.points.push_back({x, y, value});
        }
        return found;
    };
    iterate.points.reserve(band.size());
    band.forEach([&](const PointAnd<double>& point, auto place) { at(place, point.value); });
    band.forEach([&](const PointAnd<double>& point, auto place) {
        if (!isInterior(band, place)) return;
        const double old = band.get(place);
        iterate.interior.push_back({point.x, point.y, at(place, 0), at(band.template step<0, 1>(place), 0),
                                    at(band.template step<0, -1>(place), 0),
                                    at(band.template step<1, 1>(place), 0),
                                    at(band.template step<1, -1>(place), 0), old});
    });
    return iterate;
}

}  // namespace

void FastLevelSet2D::moveWithCurvatureImplicit(
    const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
    int maxIterations) {
    constexpr double kTolerance = 0.0001;
    const double hx = getXSpace(), hy = getYSpace();
    Iterate iterate =
        withBandReader(*this, *work_, [](auto& band, BandWorkspace2D&) { return makeIterate(band); });
    const auto value = [&](std::size_t i) -> double& { return iterate.points[i].value; };
    const double diagonal = (1 / (hx * hx) + 1 / (hy * hy)) * (2 * dt) + 1;
    double k = 0, vx = 0, vy = 0, s = 0;  // one set for all points: a callback must write all four
    for (int sweep = 0; sweep < maxIterations && !iterate.interior.empty(); ++sweep) {
        double sum = 0;
        for (const Interior& p : iterate.interior) {
            f(this, p.x, p.y, k, vx, vy, s);
            const double east = value(p.east), west = value(p.west);
            const double north = value(p.north), south = value(p.south);
            const double ax = vx > 0 ? -west : east, wx = vx > 0 ? 1.0 : -1.0;
            const double ay = vy > 0 ? -south : north, wy = vy > 0 ? 1.0 : -1.0;
            const double laplacian = (east + west) / (hx * hx) + (north + south) / (hy * hy);
            const double a = (dt * k) * laplacian + ((ax * vx + ay * vy) * dt);
            const double b = (vx * wx + vy * wy) * dt - diagonal;
            const double c = -p.old - s;
            const double residual = (b * value(p.here) + a) - c;
            sum = sum + residual * residual;
            value(p.here) = (c - a) / b;
        }
        if (std::sqrt(sum / static_cast<double>(iterate.interior.size())) < kTolerance) break;
    }
    replacePoints(values_, iterate.points);
}
