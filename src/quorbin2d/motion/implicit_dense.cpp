#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "quorbin2d/differences/readers.h"
#include "quorbin2d/full_level_set_2d.h"
#include "quorbin2d/motion/reflecting_laplacian.h"
#include "quorbin2d/motion/stencil_system.h"
#include "solvers/bicgstab.h"

using namespace lset::detail;

namespace {

/// 1 / h², or nothing along an axis of one point.
double inverseSquare(double h, int points) { return points > 1 ? 1.0 / (h * h) : 0.0; }

bool areFinite(const std::vector<double>& values) {
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

void fillWithNotANumber(std::vector<double>& values) {
    std::fill(values.begin(), values.end(), std::numeric_limits<double>::quiet_NaN());
}

/// The weights of an equation as the callback's coefficients at its point give them.
StencilSystem::Row equationOf(double k, double vx, double vy, double dt, double hx, double hy, int width,
                              int height) {
    const double cx = (-dt * k) / (hx * hx), cy = (-dt * k) / (hy * hy);
    StencilSystem::Row row{
        (2 * dt * k) * (inverseSquare(hx, width) + inverseSquare(hy, height)) + 1, cx, cx, cy, cy, 0};
    // Backward for a positive coefficient, forward for any other, as the upwind differences choose.
    if (width > 1) {
        const double a = (vx / hx) * dt;
        row.diagonal = vx > 0 ? row.diagonal - a : row.diagonal + a;
        (vx > 0 ? row.left : row.right) = vx > 0 ? cx + a : cx - a;
    }
    if (height > 1) {
        const double c = (vy / hy) * dt;
        row.diagonal = vy > 0 ? row.diagonal - c : row.diagonal + c;
        (vy > 0 ? row.below : row.above) = vy > 0 ? cy + c : cy - c;
    }
    return row;
}

/// Whether the solver for constant weights takes these: else a transform would overflow, or has no meaning.
bool areUsable(double wx, double wy) { return wx >= 0 && wy >= 0 && std::isfinite(16 * (wx + wy)); }

/// Leaves u for b in u, with the same weights wx and wy everywhere. False where that solver does not apply.
bool solveByTransforms(int width, int height, double wx, double wy, std::vector<double>& u) {
    constexpr double kLargest = 1e290;  // sums of a row must not overflow
    if (!areUsable(wx, wy) || largestMagnitude(u) > kLargest) return false;
    ReflectingLaplacian(width, height, wx, wy).solve(u.data());
    return true;
}

/// Leaves u for b in u. wx and wy are the weights of the neighbours that the mean diffusion gives. False
/// where the Krylov method does not reach a backward error of rounding within its steps.
bool solveIteratively(const StencilSystem& system, int width, int height, double wx, double wy,
                      double normOfA, std::vector<double>& u) {
    constexpr double kBackwardError = 1e-14;
    // Where diffusion is as weak as this, dividing by the diagonal takes more steps but less time.
    constexpr double kWeak = 8;
    constexpr int kSteps = 60, kQuickSteps = 160;
    const auto multiply = [&](const double* v, double* result) { system.multiply(v, result); };
    const std::vector<double> b = u;
    if (wx + wy <= kWeak) {
        const auto divide = [&](double* v) {
            for (std::size_t i = 0; i < system.size(); ++i) v[i] /= system[i].diagonal;
        };
        return solveByBicgstab(multiply, divide, normOfA, b, kBackwardError, kQuickSteps, u);
    }
    ReflectingLaplacian laplacian(width, height, wx, wy);
    const auto solveForTheMean = [&](double* v) { laplacian.solve(v); };
    return solveByBicgstab(multiply, solveForTheMean, normOfA, b, kBackwardError, kSteps, u);
}

}  // namespace

void FullLevelSet2D::moveAlongCurvatureImplicit() {
    if (size() == 0) return;
    const double wx = inverseSquare(getXSpace(), width_), wy = inverseSquare(getYSpace(), height_);
    std::vector<double> u(size());
    withReader(*this, [&](const auto& field) {
        double* value = u.data();
        for (int y = 0; y < height_; ++y)
            for (int x = 0; x < width_; ++x) *value++ = field.get(x, y);
    });
    if (!areFinite(u)) {
        fillWithNotANumber(u);  // every value depends on every other
    } else if (!solveByTransforms(width_, height_, wx, wy, u)) {
        StencilSystem system(width_, height_);
        for (std::size_t i = 0; i < u.size(); ++i)
            system[i] = {(wx + wy) + (wx + wy) + 1.0, -wx, -wx, -wy, -wy, u[i]};
        system.solveDirectly(u.data());
    }
    std::copy(u.begin(), u.end(), values_.get());
}

void FullLevelSet2D::moveWithCurvatureImplicit(
    const boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>& f, double dt,
    int /*maxIterations*/) {
    if (size() == 0) return;
    constexpr std::size_t kSmall = 1024;  // points; up to here the direct solver is as fast
    const double hx = getXSpace(), hy = getYSpace();
    StencilSystem system(width_, height_);
    double k = 0, vx = 0, vy = 0, source = 0;  // one set for all points: a callback must write all four
    double sumOfK = 0, firstK = 0;
    bool isWithoutAdvection = true, isUniform = true;
    const int width = width_, height = height_;
    const unsigned generation = generation_;
    std::size_t i = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x, ++i) {
            f(this, x, y, k, vx, vy, source);
            // The callback may have released the grid or made another of it.
            if (generation_ != generation) return;
            system[i] = equationOf(k, vx, vy, dt, hx, hy, width, height);
            system[i].rightSide = dt * source + get(x, y);
            if (i == 0) firstK = k;
            sumOfK += k;
            isWithoutAdvection = isWithoutAdvection && vx == 0 && vy == 0;
            isUniform = isUniform && k == firstK;
        }

    std::vector<double> u(size());
    for (i = 0; i < u.size(); ++i) u[i] = system[i].rightSide;
    const double norm = system.norm();
    const double meanK = isUniform ? firstK : sumOfK / static_cast<double>(size());
    const double wx = dt * meanK * inverseSquare(hx, width_), wy = dt * meanK * inverseSquare(hy, height_);
    if (isUniform && isWithoutAdvection && firstK == 0) {
        for (i = 0; i < u.size(); ++i) u[i] /= system[i].diagonal;
    } else if (!std::isfinite(norm)) {
        fillWithNotANumber(u);
    } else {
        const bool isSolved = isUniform && isWithoutAdvection
                                  ? solveByTransforms(width_, height_, wx, wy, u)
                                  : size() > kSmall && areUsable(wx, wy) &&
                                        solveIteratively(system, width_, height_, wx, wy, norm, u);
        if (!isSolved) system.solveDirectly(u.data());
    }
    std::copy(u.begin(), u.end(), values_.get());
}
