#include "support.h"

#include <cmath>

#include <gtest/gtest.h>

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

TEST(ImplicitCurvature, ShrinksACircleByTheSquareOfItsRadius) {
    FullLevelSet2D grid;
    fill(grid, 64, 64, [](int x, int y) { return std::hypot(x - 31.5, y - 31.5) - 20.0; });
    for (int step = 0; step < 20; ++step) grid.moveAlongCurvatureImplicit();
    const double crossing = 31.5 + std::sqrt(20.0 * 20.0 - 2 * 20.0);
    const int x = static_cast<int>(crossing);
    EXPECT_NEAR(grid.bilinear(crossing, 31.5), 0.0, 0.5) << x;
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

TEST(ImplicitStep, SolvesTheEquationWithItsOwnCoefficientsAtEveryPoint) {
    std::mt19937 random(8);
    const int w = 11, h = 9;
    const double hx = 0.8, hy = 1.5, dt = 0.3;
    FullLevelSet2D before, grid;
    fillRandom(before, w, h, random, false, hx, hy);
    grid = before;
    const auto at = [](int x, int y, double& k, double& vx, double& vy, double& s) {
        k = 0.5 + 0.1 * x;
        vx = 0.4 * (x - 5);
        vy = 0.3 * (4 - y);
        s = x - 2 * y;
    };
    grid.moveWithCurvatureImplicit(
        [&](LevelSet2D* levelSet, int x, int y, double& k, double& vx, double& vy, double& s) {
            EXPECT_EQ(levelSet->get(x, y), before.get(x, y));
            at(x, y, k, vx, vy, s);
        },
        dt, 5);
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
            ASSERT_NEAR(u - dt * (k * laplacian + vx * dx + vy * dy), before.get(x, y) + dt * s, 1e-12);
        }
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
