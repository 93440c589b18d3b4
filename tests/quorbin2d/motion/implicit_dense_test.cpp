#include "quorbin2d/dense_support.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "quorbin2d/motion/stencil_system.h"

namespace {

using Coefficients = boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>;

int reflected(int c, int n) { return c < 0 ? 1 : c >= n ? n - 2 : c; }

TEST(ImplicitCurvature, LeavesAConstantFieldAlone) {
    for (auto [w, h] : {std::pair{2, 2}, {3, 7}, {16, 5}}) {
        FullLevelSet2D grid;
        fill(
            grid, w, h, [](int, int) { return 3.0; }, 0.5, 2.0);
        grid.moveAlongCurvatureImplicit();
        for (int i = 0; i < w * h; ++i) EXPECT_NEAR(grid.data()[i], 3.0, 1e-13);
    }
}

TEST(ImplicitCurvature, SolvesTheReflectedEquationAtEveryPoint) {
    std::mt19937 random(6);
    for (auto [w, h] : {std::pair{2, 2}, {2, 9}, {3, 3}, {17, 13}})
        for (auto [hx, hy] : {std::pair{1.0, 1.0}, {0.3, 2.0}}) {
            FullLevelSet2D before, grid;
            fillRandom(before, w, h, random, false, hx, hy);
            grid = before;
            grid.moveAlongCurvatureImplicit();
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const double u = grid.get(x, y);
                    const double sumX = grid.get(reflected(x - 1, w), y) + grid.get(reflected(x + 1, w), y);
                    const double sumY = grid.get(x, reflected(y - 1, h)) + grid.get(x, reflected(y + 1, h));
                    const double laplacian = (sumX - 2 * u) / (hx * hx) + (sumY - 2 * u) / (hy * hy);
                    ASSERT_NEAR(u - laplacian, before.get(x, y), 1e-12);
                }
        }
}

TEST(ImplicitCurvature, IsWhatTheDirectSolverFinds) {
    std::mt19937 random(16);
    for (auto [w, h] :
         {std::pair{1, 5}, {2, 2}, {3, 2}, {7, 1}, {13, 17}, {31, 64}, {64, 33}, {65, 2}, {2, 129}, {97, 40}})
        for (auto [hx, hy] : {std::pair{1.0, 1.0}, {0.05, 0.05}, {0.01, 3.0}, {10.0, 0.2}}) {
            FullLevelSet2D grid;
            SlowPath slow;
            fillRandom(grid, w, h, random, false, hx, hy);
            slow = grid;
            const double wx = w > 1 ? 1 / (hx * hx) : 0, wy = h > 1 ? 1 / (hy * hy) : 0;
            lset::detail::StencilSystem system(w, h);
            for (std::size_t i = 0; i < system.size(); ++i)
                system[i] = {2 * (wx + wy) + 1, -wx, -wx, -wy, -wy, grid.data()[i]};
            std::vector<double> expected(system.size());
            system.solveDirectly(expected.data());
            grid.moveAlongCurvatureImplicit();
            slow.moveAlongCurvatureImplicit();
            const double tolerance = std::max(1e-12, 50 * 2.2e-16 * (1 + 4 * wx + 4 * wy));
            for (std::size_t i = 0; i < expected.size(); ++i) {
                ASSERT_NEAR(grid.data()[i], expected[i], tolerance) << w << " x " << h;
                ASSERT_EQ(grid.data()[i], slow.data()[i]);
            }
        }
}

TEST(ImplicitCurvature, OfWhatIsNotFiniteIsNotANumberAndOfHugeValuesIsFinite) {
    FullLevelSet2D grid;
    const auto fillWithOne = [&](double value) {
        fill(grid, 9, 8, [=](int x, int y) { return x == 4 && y == 3 ? value : 1.0; });
        grid.moveAlongCurvatureImplicit();
    };
    for (const double value : {std::nan(""), HUGE_VAL}) {
        fillWithOne(value);
        for (int i = 0; i < 72; ++i) EXPECT_TRUE(std::isnan(grid.data()[i]));
    }
    fillWithOne(1e308);
    for (int i = 0; i < 72; ++i) EXPECT_GT(grid.data()[i], 1e290);
    grid.init(9, 8, 0.0, 1.0);
    grid.moveAlongCurvatureImplicit();
    EXPECT_TRUE(std::isnan(grid.data()[0]));
}

/// Mean distance of the contour from the centre of a square grid.
double meanRadius(const FullLevelSet2D& grid, double centre) {
    Points points;
    Segments segments;
    grid.getLinesUnique(points, segments);
    double sum = 0;
    for (const auto& point : points) sum += std::hypot(point.x - centre, point.y - centre);
    return sum / static_cast<double>(points.size());
}

/// How far a circle of radius 0.6 in a square of 2 strays from r^2 = r0^2 - 2t until the time 0.08. A dt of 0
/// means explicit steps.
double errorOfCircle(int size, double dt) {
    const double h = 2.0 / size, centre = size / 2.0 - 0.3, time = 0.08;
    FullLevelSet2D grid;
    const auto signedDistance = [&] {
        grid.ensureSignedDistance();
        for (int i = 0; i < size * size; ++i) grid.data()[i] *= h;
    };
    fill(
        grid, size, size, [=](int x, int y) { return std::hypot(x - centre, y - centre) * h - 0.6; }, h, h);
    const double step = dt > 0 ? dt : h * h / 4;
    const int steps = static_cast<int>(std::lround(time / step));
    const Coefficients curvature = [](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& s) {
        k = 1;
        vx = vy = s = 0;
    };
    for (int i = 1; i <= steps; ++i) {
        dt > 0 ? grid.moveWithCurvatureImplicit(curvature, dt, 0) : grid.moveAlongCurvature();
        if (dt > 0 || i % 10 == 0) signedDistance();
    }
    return meanRadius(grid, centre) * h - std::sqrt(0.36 - 2 * step * steps);
}

TEST(ImplicitStep, ShrinksACircleByTheSquareOfItsRadiusToFirstOrder) {
    // The step errs by dt, the reinitialisation after each by h^2: in all by 0.85 dt + 0.02 h^2 / dt.
    for (const int size : {64, 128})
        for (const double dt : {0.008, 0.004, 0.002}) {
            const double h = 2.0 / size;
            EXPECT_LT(std::abs(errorOfCircle(size, dt)), 0.85 * dt + 0.02 * h * h / dt) << size << ", " << dt;
        }
    // Explicit steps of h^2 / 4 are within the same bound of the implicit ones.
    EXPECT_NEAR(errorOfCircle(128, 0), errorOfCircle(128, 0.004), 0.0028);
}

TEST(ImplicitStep, WithASourceAloneRaisesByExactlyThat) {
    FullLevelSet2D grid;
    fill(grid, 5, 4, [](int x, int y) { return double(x - y); });
    const Coefficients source = [](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& s) {
        k = vx = vy = 0;
        s = 1;
    };
    grid.moveWithCurvatureImplicit(source, 0.5, 0);
    for (int i = 0; i < 20; ++i) {
        const int x = i % 5, y = i / 5;
        EXPECT_EQ(grid.data()[i], x - y + 0.5);
    }
}

/// Moves a random field and looks at the equation of every point, within rounding of the largest term.
void solvesTheEquation(int w, int h, double dt, double advection) {
    std::mt19937 random(8);
    const double hx = 0.8, hy = 1.5;
    FullLevelSet2D before, grid;
    fillRandom(before, w, h, random, false, hx, hy);
    grid = before;
    const auto at = [=](int x, int y, double& k, double& vx, double& vy, double& s) {
        k = 1 + 0.5 * std::sin(0.7 * x);
        vx = advection * std::cos(0.3 * y);
        vy = advection * std::sin(0.5 * x);
        s = 0.1 * x - 0.2 * y;
    };
    grid.moveWithCurvatureImplicit(
        [&](LevelSet2D* levelSet, int x, int y, double& k, double& vx, double& vy, double& s) {
            EXPECT_EQ(levelSet->get(x, y), before.get(x, y));
            at(x, y, k, vx, vy, s);
        },
        dt, 5);
    double largest = 0;
    for (int i = 0; i < w * h; ++i) largest = std::max(largest, std::abs(grid.data()[i]));
    const double tolerance =
        2e-14 * ((1 + (20 + 4 * advection) * std::abs(dt)) * largest + std::abs(dt) * (w + h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            double k, vx, vy, s;
            at(x, y, k, vx, vy, s);
            const double u = grid.get(x, y);
            const double left = grid.get(reflected(x - 1, w), y), right = grid.get(reflected(x + 1, w), y);
            const double below = grid.get(x, reflected(y - 1, h)), above = grid.get(x, reflected(y + 1, h));
            const double laplacian = (left + right - 2 * u) / (hx * hx) + (below + above - 2 * u) / (hy * hy);
            const double dx = (vx > 0 ? u - left : right - u) / hx,
                         dy = (vy > 0 ? u - below : above - u) / hy;
            ASSERT_NEAR(u - dt * (k * laplacian + vx * dx + vy * dy), before.get(x, y) + dt * s, tolerance)
                << w << " x " << h << ", dt " << dt << ", advection " << advection;
        }
}

TEST(ImplicitStep, SolvesTheEquationWithItsOwnCoefficientsAtEveryPoint) {
    solvesTheEquation(11, 9, 0.3, 0.6);   // few points: direct
    solvesTheEquation(47, 53, 0.3, 0.6);  // weak diffusion, strong diffusion, and what no iteration solves
    solvesTheEquation(47, 53, 30, 0.05);
    solvesTheEquation(47, 53, 5, 8);
    solvesTheEquation(47, 53, -0.1, 0.6);
}

TEST(ImplicitStep, DropsAnAxisOfOnePointAndDoesNothingToNothing) {
    FullLevelSet2D column, empty;
    fill(column, 1, 3, [](int, int y) { return double(y == 1); });
    column.moveAlongCurvatureImplicit();
    EXPECT_NEAR(column.get(0, 0) * 3 - 2 * column.get(0, 1), 0.0, 1e-14);
    empty.moveAlongCurvatureImplicit();
    EXPECT_THROW(column.moveWithCurvatureImplicit({}, 1.0, 0), boost::bad_function_call);
}

}  // namespace
