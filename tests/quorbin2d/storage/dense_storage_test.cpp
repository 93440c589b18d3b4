#include "quorbin2d/dense_support.h"

#include <climits>
#include <cmath>
#include <utility>

#include <gtest/gtest.h>

namespace {

void expectEmpty(const FullLevelSet2D& grid) {
    EXPECT_EQ(grid.getWidth(), 0);
    EXPECT_EQ(grid.getHeight(), 0);
    EXPECT_EQ(grid.getXSpace(), 0.0);
    EXPECT_EQ(grid.getYSpace(), 0.0);
}

TEST(DenseStorage, IsMirroredOnceAtEachEnd) {
    FullLevelSet2D grid;
    fill(grid, 4, 3, [](int x, int y) { return 10 * y + x; });
    const std::pair<int, int> readAt[] = {{-1, 1}, {-3, 3}, {-4, 3}, {0, 0}, {3, 3}, {4, 3}, {5, 2}, {7, 0}};
    for (auto [x, column] : readAt) EXPECT_EQ(grid.get(x, 1), 10 + column) << x;
    EXPECT_EQ(grid.get(0, -2), 20);
    EXPECT_EQ(grid.get(0, 3), 20);
    grid(-1, 0) = 5.0;
    EXPECT_EQ(grid.get(1, 0), 5.0);
    EXPECT_EQ(grid.data()[1], 5.0);
    EXPECT_TRUE(grid.have(3, 2));
    for (auto [x, y] : {std::pair{-1, 0}, {4, 0}, {0, 3}, {0, -1}}) EXPECT_FALSE(grid.have(x, y));
}

TEST(DenseStorage, IsSizedCopiedAndEmptied) {
    FullLevelSet2D grid, copy;
    expectEmpty(grid);
    fill(
        grid, 3, 2, [](int x, int y) { return x - y; }, 0.5, 2.0);
    copy = grid;
    grid(0, 0) = 99.0;
    EXPECT_EQ(copy.get(0, 0), 0.0);
    EXPECT_EQ(copy.get(2, 1), 1.0);
    EXPECT_EQ(copy.getXSpace(), 0.5);
    EXPECT_EQ(copy.getYSpace(), 2.0);
    grid.init(5, 4, 1.0, 1.0);
    EXPECT_EQ(grid.get(0, 0), 0.0);
    copy = *&copy;
    expectEmpty(copy);
    grid.release();
    expectEmpty(grid);
    EXPECT_EQ(grid.data(), nullptr);
}

TEST(DenseStorage, StaysAsItIsWhenSizesMakeNoGrid) {
    FullLevelSet2D grid;
    fill(grid, 3, 2, [](int, int) { return 7.0; });
    for (auto [w, h] : {std::pair{-1, 4}, {4, INT_MIN}, {INT_MAX, INT_MAX}}) grid.init(w, h, 1.0, 1.0);
    EXPECT_EQ(grid.getWidth(), 3);
    EXPECT_EQ(grid.getHeight(), 2);
    EXPECT_EQ(grid.get(2, 1), 7.0);
}

TEST(DenseStorage, InterpolatesBilinearlyAndClamps) {
    FullLevelSet2D grid;
    fill(grid, 4, 3, [](int x, int y) { return 2.0 * x + 3.0 * y + x * y; });
    EXPECT_DOUBLE_EQ(grid.bilinear(1.25, 0.5), 2.5 + 1.5 + 0.625);
    EXPECT_EQ(grid.bilinear(-3.2, 0.5), grid.bilinear(0.0, 0.5));
    EXPECT_EQ(grid.bilinear(3.0 + 7.5, 1.0), grid.bilinear(3.0, 1.0));
    EXPECT_EQ(grid.bilinear(3.0, 2.0), grid.get(3, 2));
    EXPECT_EQ(grid.bilinear(NAN, NAN), grid.get(0, 0));
}

TEST(DenseStorage, IsMovedAndLeavesAnEmptyOneBehind) {
    FullLevelSet2D grid;
    grid.init(3, 2, 0.5, 2.0);
    grid.data()[1] = 7;
    const double* const values = grid.data();
    FullLevelSet2D moved = std::move(grid);
    EXPECT_EQ(moved.data(), values);
    EXPECT_EQ(moved.getXSpace(), 0.5);
    grid = std::move(moved);
    EXPECT_EQ(grid.data(), values);
    EXPECT_EQ(moved.data(), nullptr);
    EXPECT_EQ(moved.getWidth() + moved.getYSpace(), 0);
    moved.init(3, 2, 0.5, 2.0);
    EXPECT_EQ(moved.data()[1], 0);
}

}  // namespace
