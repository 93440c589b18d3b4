#include "quorbin2d/dense_support.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

double circle(int x, int y, double r) { return std::hypot(x - 63.5, y - 63.5) - r; }

/// Radius of the disc of values ≤ 0, from its area by the values along the middle row.
double radiusOnMiddleRow(const FullLevelSet2D& grid) {
    for (int x = 64; x < grid.getWidth(); ++x)
        if (grid.get(x, 64) > 0) {
            const double crossing = x - grid.get(x, 64) / (grid.get(x, 64) - grid.get(x - 1, 64));
            return std::hypot(crossing - 63.5, 0.5);
        }
    return 0;
}

TEST(CurvatureStep, TakesTheStableTimeStep) {
    for (auto [hx, hy, dt] : {std::tuple{1.0, 1.0, 0.25}, {2.0, 1.0, 0.4}}) {
        FullLevelSet2D grid;
        fill(
            grid, 9, 9, [](int x, int y) { return double(x * x + y * y); }, hx, hy);
        grid.moveAlongCurvature();
        EXPECT_DOUBLE_EQ(grid.get(4, 4), 32 + dt * (2 / (hx * hx) + 2 / (hy * hy)));
    }
}

TEST(CurvatureStep, LeavesAPlaneAloneAwayFromTheBorder) {
    FullLevelSet2D grid;
    fill(grid, 9, 7, [](int x, int y) { return 0.5 * x - 2.0 * y; });
    grid.moveAlongCurvature();
    EXPECT_EQ(grid.get(4, 3), -4.0);
    EXPECT_NE(grid.get(0, 3), -6.0);
}

TEST(CurvatureStep, ShrinksACircleByTheSquareOfItsRadius) {
    FullLevelSet2D grid;
    fill(grid, 128, 128, [](int x, int y) { return circle(x, y, 40.0); });
    for (int step = 0; step < 400; ++step) {
        grid.moveAlongCurvature();
        if (step % 10 == 9) grid.ensureSignedDistanceFMM();
    }
    EXPECT_NEAR(radiusOnMiddleRow(grid), std::sqrt(40.0 * 40.0 - 2 * 100.0), 0.25);
}

TEST(CurvatureStep, IsTheSameBitsOnBothPaths) {
    onRandomPairs(
        [](FullLevelSet2D& dense, SlowPath& slow) {
            for (int step = 0; step < 3; ++step) {
                dense.moveAlongCurvature();
                slow.moveAlongCurvature();
            }
            ASSERT_EQ(bits(dense), bits(slow)) << dense.getWidth() << " x " << dense.getHeight();
        },
        2);
}

// The differences that nobody uses would defer to each other for ever in a subclass, but not here.
TEST(CurvatureStep, MovesAGridOfOneColumn) {
    FullLevelSet2D column;
    fill(column, 1, 5, [](int, int y) { return double(y * y); });
    column.moveAlongCurvature();
    EXPECT_EQ(column.get(0, 2), 4 + 0.25 * 2);
}

TEST(CurvatureStep, AsksASubclassForEveryDifferenceAndCurvature) {
    struct Logged : FullLevelSet2D {
        mutable std::string log;
        double getDxCentral(int, int) const override { return log += 'x', 0.0; }
        double getDyCentral(int, int) const override { return log += 'y', 0.0; }
        double getCurvature(int, int) const override { return log += 'k', 4.0; }
    };
    Logged grid;
    grid.init(2, 1, 1.0, 1.0);
    grid.moveAlongCurvature();
    EXPECT_EQ(grid.log, "xyxykk");
    EXPECT_EQ(grid.get(1, 0), 1.0);
}

TEST(SpeedStep, TakesTheSmallestLimit) {
    FullLevelSet2D grid;
    fill(grid, 5, 4, [](int x, int y) { return double(x + y); });
    std::vector<int> visited;
    grid.moveWithCurvature([&](LevelSet2D* levelSet, int x, int y, double* limit) {
        EXPECT_EQ(levelSet, &grid);
        EXPECT_EQ(levelSet->get(x, y), x + y);  // the old field throughout
        visited.push_back(y * 5 + x);
        *limit = x == 2 && y == 1 ? 0.1 : x == 3 ? NAN : 10.0;
        return 2.0;
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(visited[static_cast<std::size_t>(i)], i);
        const int x = i % 5, y = i / 5;
        EXPECT_EQ(grid.data()[i], x + y + 0.1 * 2.0);
    }
}

TEST(SpeedStep, LeavesTheFieldAloneWhenTheCallbackThrows) {
    FullLevelSet2D grid;
    fill(grid, 3, 3, [](int x, int) { return double(x); });
    const auto before = bits(grid);
    EXPECT_THROW(grid.moveWithCurvature({}), boost::bad_function_call);
    EXPECT_EQ(bits(grid), before);
    grid.moveWithCurvature([](LevelSet2D* levelSet, int, int, double*) {
        static_cast<FullLevelSet2D*>(levelSet)->release();
        return 1.0;
    });
    EXPECT_EQ(grid.getWidth(), 0);
    FullLevelSet2D empty;
    empty.moveWithCurvature({});
    empty.moveAlongCurvature();
}

TEST(SpeedStep, EndsWhenTheCallbackMakesAnotherGridOfIt) {
    FullLevelSet2D grid;
    for (const bool isImplicit : {false, true})
        for (const bool isSameSize : {false, true}) {  // most likely at the same address
            fill(grid, 64, 64, [](int x, int y) { return double(x - y); });
            int calls = 0;
            const auto remake = [&] {
                if (++calls != 5) return;
                grid.release();
                grid.init(isSameSize ? 64 : 8, isSameSize ? 64 : 512, 1, 1);
            };
            if (isImplicit)
                grid.moveWithCurvatureImplicit(
                    [&](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& s) {
                        k = vx = vy = s = 1;
                        remake();
                    },
                    0.1, 1);
            else
                grid.moveWithCurvature([&](LevelSet2D*, int, int, double* limit) {
                    remake();
                    return *limit = 1.0;
                });
            EXPECT_EQ(calls, 5);
            for (int i = 0; i < 64 * 64; ++i) ASSERT_EQ(grid.data()[i], 0.0);
        }
}

}  // namespace
