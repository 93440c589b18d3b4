#include <cmath>
#include <utility>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"

namespace {

TEST(Volume, IsMirroredOnceAtEachEndOfEveryAxis) {
    FullLevelSet3D grid;
    fill(grid, {3, 4, 5}, [](int x, int y, int z) { return x + 10 * y + 100 * z; });
    const int mirrors[][3] = {{-1, 1, 3}, {-2, 2, 3}, {3, 2, 3},  {4, 1, 3},
                              {-1, 1, 4}, {4, 3, 4},  {-1, 1, 5}, {5, 4, 5}};
    for (const auto& [c, mirrored, n] : mirrors) {
        if (n == 3) {
            EXPECT_EQ(grid.get(c, 1, 2), mirrored + 210);
        }
        if (n == 4) {
            EXPECT_EQ(grid.get(1, c, 2), 10 * mirrored + 201);
        }
        if (n == 5) {
            EXPECT_EQ(grid.get(1, 2, c), 100 * mirrored + 21);
        }
    }
    grid(-1, 0, 0) = 7;
    EXPECT_EQ(grid.data()[1], 7);
    EXPECT_TRUE(grid.have(2, 3, 4));
    EXPECT_FALSE(grid.have(3, 0, 0) || grid.have(0, 4, 0) || grid.have(0, 0, 5) || grid.have(0, 0, -1));
}

TEST(Volume, IsSizedCopiedAndEmptied) {
    FullLevelSet3D grid, copy;
    fill(
        grid, {2, 3, 4}, [](int x, int y, int z) { return x - y * z; }, 0.5, 0.25, 2.0);
    copy = grid;
    grid.init(-1, 2, 2, 1, 1, 1);
    grid.init(1 << 30, 1 << 30, 1 << 30, 1, 1, 1);
    EXPECT_EQ(bits(copy), bits(grid));
    EXPECT_EQ(copy.getZSpace(), 2.0);
    grid.release();
    grid.release();
    EXPECT_EQ(grid.data(), nullptr);
    EXPECT_EQ(grid.getDepth() + grid.getXSpace(), 0);
    EXPECT_EQ(copy.get(1, 2, 3), 1 - 6);
}

TEST(Volume, VisitsEveryPointLayerByLayer) {
    static int count;
    count = 0;
    FullLevelSet3D grid;
    grid.init(3, 2, 2, 1, 1, 1);
    const auto visit = [](int x, int y, int z, double& value) {
        EXPECT_EQ(x + 3 * (y + 2 * z), count);
        value = count++;
    };
    grid.forEach(visit);
    EXPECT_EQ(grid.get(2, 1, 1), 11);
    count = 0;
    grid.forEachWithNeigh(visit);
    EXPECT_EQ(count, 12);
}

/// Counts what is written through its slot, and lies about its sizes.
struct Canvas : FullLevelSet2D {
    int writes = 0;
    double& operator()(int x, int y) override { return ++writes, FullLevelSet2D::operator()(x, y); }
    int getWidth() const override { return 77; }
    void release() override {}
};

TEST(Volume, WritesPlanesThroughTheSlotWhateverSizesItReports) {
    FullLevelSet3D grid;
    fill(grid, {3, 4, 5}, [](int x, int y, int z) { return x + 10 * y + 100 * z; });
    Canvas plane;
    for (int again = 0; again < 2; ++again) ASSERT_TRUE(grid.getXPlane(2, plane, false));
    EXPECT_EQ(plane.writes, 2 * 20);
    EXPECT_EQ(plane.get(3, 4), 432);
}

TEST(Volume, GivesPlanesWithTheTwoOtherAxes) {
    FullLevelSet3D grid;
    fill(
        grid, {3, 4, 5}, [](int x, int y, int z) { return x + 10 * y + 100 * z; }, 1, 2, 3);
    FullLevelSet2D plane;
    fill(plane, 2, 2, [](int, int) { return 1.0; });
    EXPECT_FALSE(grid.getZPlane(5, plane, false) || grid.getXPlane(-1, plane, true) ||
                 grid.getYPlane(4, plane, false));
    EXPECT_EQ(plane.getWidth(), 2);
    ASSERT_TRUE(grid.getXPlane(2, plane, false));
    EXPECT_EQ(plane.get(3, 4), 432);
    EXPECT_EQ(plane.getXSpace() + 10 * plane.getYSpace(), 32);
    ASSERT_TRUE(grid.getYPlane(1, plane, false));
    EXPECT_EQ(plane.get(2, 4), 412);
    EXPECT_EQ(plane.getXSpace() + 10 * plane.getYSpace(), 31);
    ASSERT_TRUE(grid.getZPlane(3, plane, false));
    EXPECT_EQ(plane.get(2, 3), 332);
    EXPECT_EQ(plane.getHeight(), 4);
    fill(grid, {6, 3, 3}, [](int x, int, int) { return 9 * (x - 2.5); });
    ASSERT_TRUE(grid.getZPlane(1, plane, true));
    EXPECT_NEAR(plane.get(5, 1), 2.5, 1e-12);
}

TEST(Volume, IsMovedAndLeavesAnEmptyOneBehind) {
    FullLevelSet3D grid;
    grid.init(3, 2, 4, 0.5, 2.0, 1.0);
    grid.data()[1] = 7;
    const double* const values = grid.data();
    FullLevelSet3D moved = std::move(grid);
    EXPECT_EQ(moved.data(), values);
    EXPECT_EQ(moved.getXSpace(), 0.5);
    grid = std::move(moved);
    EXPECT_EQ(grid.data(), values);
    EXPECT_EQ(moved.data(), nullptr);
    EXPECT_EQ(moved.getWidth() + moved.getYSpace(), 0);
    moved.init(3, 2, 4, 0.5, 2.0, 1.0);
    EXPECT_EQ(moved.data()[1], 0);
}

}  // namespace
