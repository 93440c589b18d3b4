#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "band/motion/steps.h"
#include "quorbin3d/differences/band_readers.h"

using namespace lset::detail;

namespace {

/// The equation of a point, whose unknowns are its own value and those of its neighbours.
struct Equation {
    double constant;
    std::array<double, 3> diffusion, advection;  // along each axis
};

/// The sum over the neighbours and the weight of the point itself.
struct Balance {
    double sum, diagonal;
};

Balance balanceOf(const Equation& e, const std::array<double, 6>& beside) {
    const auto& w = e.diffusion;
    double sum =
        (w[0] * (beside[0] + beside[1]) + w[1] * (beside[2] + beside[3])) + w[2] * (beside[4] + beside[5]);
    double diagonal = 1.0 + 2.0 * ((w[0] + w[1]) + w[2]);
    // From the side that the values come from.
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double c = e.advection[axis];
        sum = c > 0 ? sum + c * beside[2 * axis] : sum - c * beside[2 * axis + 1];
        diagonal = c > 0 ? diagonal + c : diagonal - c;
    }
    return {sum, diagonal};
}

}  // namespace

void FastLevelSet3D::moveWithCurvatureImplicit(
    const boost::function<void(LevelSet3D*, int, int, int, double&, double&, double&, double&, double&)>& f,
    double dt, int maxIterations) {
    constexpr double kTolerance = 0.0001;
    if (maxIterations <= 0) return;
    const double hx = getXSpace(), hy = getYSpace(), hz = getZSpace();
    std::vector<Equation> equations;
    BandIterate<3> iterate =
        makeBandIterate<AbsentNeighbour::kMakesPointNotInterior>(*this, work(), [&](const auto& point) {
            double k = 0, vx = 0, vy = 0, vz = 0, s = 0;
            f(this, point.at[0], point.at[1], point.at[2], k, vx, vy, vz, s);
            equations.push_back({point.old + dt * s,
                                 {(dt * k) / (hx * hx), (dt * k) / (hy * hy), (dt * k) / (hz * hz)},
                                 {(dt * vx) / hx, (dt * vy) / hy, (dt * vz) / hz}});
        });
    const std::size_t count = equations.size();
    for (int sweep = 0; sweep < maxIterations && count > 0; ++sweep) {
        double sum = 0;
        for (std::size_t m = 0; m < count; ++m) {
            const auto& point = iterate.interior[m];
            std::array<double, 6> beside;
            for (std::size_t d = 0; d < 6; ++d) beside[d] = iterate.value(point.beside[d]);
            const Balance balance = balanceOf(equations[m], beside);
            const double right = equations[m].constant + balance.sum;
            double& value = iterate.value(point.here);
            const double residual = right - balance.diagonal * value;
            sum = sum + residual * residual;
            value = right / balance.diagonal;
        }
        if (std::sqrt(sum / static_cast<double>(count)) < kTolerance) break;
    }
    takePoints(iterate, values_);
}
