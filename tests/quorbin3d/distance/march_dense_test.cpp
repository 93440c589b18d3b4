#include <cmath>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"
#include "textbook/march.h"

namespace {

TEST(VolumeMarch, IsTheSameBitsOnBothPathsAndInTheTextbook) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        const std::vector<double> textbook = textbookMarch(dense);
        dense.ensureSignedDistanceFMM();
        slow.ensureSignedDistanceFMM();
        ASSERT_EQ(bits(dense), bits(slow));
        ASSERT_EQ(bits(dense), bits(textbook.data(), textbook.size()));
    });
    FullLevelSet3D far;
    fill(
        far, {50, 40, 45}, [](int x, int y, int z) { return std::hypot(x - 7, y - 9, z - 30.3) - 5.2; }, 1.0,
        1.5, 0.8);
    const std::vector<double> textbook = textbookMarch(far);
    far.ensureSignedDistanceFMM();
    ASSERT_EQ(bits(far), bits(textbook.data(), textbook.size()));
}

TEST(VolumeMarch, OfAPlaneIsItsDistanceAndOfABallRightToFirstOrder) {
    FullLevelSet3D grid;
    fill(grid, {8, 4, 4}, [](int x, int, int) { return x - 3.5; });
    grid.ensureSignedDistanceFMM();
    for (int x = 0; x < 8; ++x) EXPECT_NEAR(grid.get(x, 2, 1), x - 3.5, 1e-12);
    const auto ball = [](int x, int y, int z) { return std::hypot(x - 15.3, y - 14.8, (z - 8) * 2) - 10; };
    fill(grid, {32, 32, 17}, ball, 1, 1, 2);
    grid.ensureSignedDistanceFMM();
    for (int z = 0; z < 17; ++z)
        for (int y = 0; y < 32; ++y)
            for (int x = 0; x < 32; ++x) EXPECT_NEAR(grid.get(x, y, z), ball(x, y, z), 1.2);
    fill(grid, {3, 3, 3}, [](int, int, int) { return 4.0; });
    grid.ensureSignedDistanceFMM();
    EXPECT_EQ(grid.get(1, 1, 1), 0.0);
    FullLevelSet3D().ensureSignedDistanceFMM();
}

TEST(VolumeEstimate, TakesTriplesThenPairsThenSingles) {
    const auto estimate = [](int xm, int xp, int yp, int ym, int zp, int zm, double d = 0) {
        return estimateDistanceHelper(xm, xp, yp, ym, zp, zm, d, d, d, d, d, d, 1, 2, 2);
    };
    EXPECT_EQ(estimate(0, 0, 0, 0, 0, 0), 1e11);
    EXPECT_EQ(estimate(0, 1, 0, 0, 0, 0, 3), 4);
    EXPECT_DOUBLE_EQ(estimate(0, 0, 1, 0, 0, 1), std::sqrt(2.0));
    EXPECT_DOUBLE_EQ(estimate(1, 0, 1, 0, 1, 0), 1 / std::sqrt(1.5));
    // A pair that has no root leaves the field to single neighbours, a triple to pairs.
    EXPECT_EQ(estimateDistanceHelper(1, 0, 1, 0, 0, 0, 0, 0, 9, 0, 0, 0, 1, 1, 1), 1);
    EXPECT_DOUBLE_EQ(estimateDistanceHelper(1, 0, 1, 0, 1, 0, 0, 0, 0, 0, 9, 0, 1, 1, 1), std::sqrt(0.5));
    FullLevelSet3D corner;
    fill(corner, {3, 3, 3}, [](int x, int y, int z) { return x == 1 && y == 1 && z == 1 ? -1.0 : 1.0; });
    EXPECT_DOUBLE_EQ(corner.estimateDistanceInit(1, 1, 1), 1 / std::sqrt(3 / 0.25));
    EXPECT_EQ(corner.estimateDistanceInit(1, 1, 0), 0.5);
    EXPECT_EQ(corner.estimateDistanceInit(0, 0, 0), 1e11);
}

}  // namespace
