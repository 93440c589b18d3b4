#include <cmath>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"

namespace {

TEST(VolumeDifferences, OfALinearFieldAreItsSlopesAndMirrorOneSidedAtTheFaces) {
    FullLevelSet3D grid;
    fill(
        grid, {4, 5, 6}, [](int x, int y, int z) { return 2 * 0.5 * x - 3 * y + 0.25 * 2 * z; }, 0.5, 1, 2);
    for (const int c : {0, 2, 3}) {
        EXPECT_DOUBLE_EQ(grid.getDxCentral(c, 1, 1), 2);
        EXPECT_DOUBLE_EQ(grid.getDyCentral(1, c, 1), -3);
        EXPECT_DOUBLE_EQ(grid.getDzCentral(1, 1, c), 0.25);
    }
    EXPECT_DOUBLE_EQ(grid.getDxMinus(0, 1, 1), -2);  // -1 reads 1
    EXPECT_DOUBLE_EQ(grid.getDzPlus(1, 1, 5), 0);    // n reads n - 1
    EXPECT_DOUBLE_EQ(grid.getDyUpwind(1, 0, 1, 0.0), -3);
    EXPECT_DOUBLE_EQ(grid.getDyUpwind(1, 0, 1, 1.0), 3);
    EXPECT_DOUBLE_EQ(grid.averageNormalLength(), std::sqrt(4 + 9 + 0.0625));
    double dx, dy, dz;
    EXPECT_EQ(grid.getCurvatureAndUpwind(1, 2, 3, 1, -1, 0, dx, dy, dz), grid.getCurvature(1, 2, 3));
    EXPECT_DOUBLE_EQ(dx + dy + dz, 2 - 3 + 0.25);
    EXPECT_TRUE(std::isnan(FullLevelSet3D().averageNormalLength()));
    // 1 / h^2 times the second differences.
    fill(
        grid, {3, 3, 3}, [](int x, int y, int z) { return x * x + 2.0 * y * y + 4.0 * z * z; }, 1, 2, 0.5);
    EXPECT_EQ(grid.getCurvature(1, 1, 1), 2 + 4 / 4.0 + 8 / 0.25);
}

TEST(VolumeDifferences, HaveTheSameMeanLengthOnBothPaths) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        ASSERT_EQ(dense.averageNormalLength(), slow.averageNormalLength());
    });
}

}  // namespace
