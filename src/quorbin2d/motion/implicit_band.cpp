#include <cmath>
#include <vector>

#include "band/motion/steps.h"
#include "quorbin2d/differences/band_readers.h"

using namespace lset::detail;

void FastLevelSet2D::moveWithCurvatureImplicit(
    const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
    int maxIterations) {
    constexpr double kTolerance = 0.0001;
    const double hx = getXSpace(), hy = getYSpace();
    BandIterate<2> iterate =
        makeBandIterate<AbsentNeighbour::kEntersWithZero>(*this, work(), [](const auto&) {});
    const double diagonal = (1 / (hx * hx) + 1 / (hy * hy)) * (2 * dt) + 1;
    double k = 0, vx = 0, vy = 0, s = 0;  // one set for all points: a callback must write all four
    for (int sweep = 0; sweep < maxIterations && !iterate.interior.empty(); ++sweep) {
        double sum = 0;
        for (const auto& p : iterate.interior) {
            f(this, p.at[0], p.at[1], k, vx, vy, s);
            const double east = iterate.value(p.beside[0]), west = iterate.value(p.beside[1]);
            const double north = iterate.value(p.beside[2]), south = iterate.value(p.beside[3]);
            const double ax = vx > 0 ? -west : east, wx = vx > 0 ? 1.0 : -1.0;
            const double ay = vy > 0 ? -south : north, wy = vy > 0 ? 1.0 : -1.0;
            const double laplacian = (east + west) / (hx * hx) + (north + south) / (hy * hy);
            const double a = (dt * k) * laplacian + ((ax * vx + ay * vy) * dt);
            const double b = (vx * wx + vy * wy) * dt - diagonal;
            const double c = -p.old - s;
            const double residual = (b * iterate.value(p.here) + a) - c;
            sum = sum + residual * residual;
            iterate.value(p.here) = (c - a) / b;
        }
        if (std::sqrt(sum / static_cast<double>(iterate.interior.size())) < kTolerance) break;
    }
    takePoints(iterate, values_);
}
