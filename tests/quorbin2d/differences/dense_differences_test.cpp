#include "quorbin2d/dense_support.h"

#include <gtest/gtest.h>

namespace {

TEST(Differences, OfASquareAreKnownNumbers) {
    FullLevelSet2D grid;
    fill(
        grid, 8, 9, [](int x, int y) { return double(x * x + 10 * y * y); }, 0.5, 2.0);
    EXPECT_EQ(grid.getDxCentral(3, 4), 12.0);
    EXPECT_EQ(grid.getDxMinus(3, 4), 10.0);
    EXPECT_EQ(grid.getDxPlus(3, 4), 14.0);
    EXPECT_EQ(grid.getDyCentral(3, 4), 10 * (25 - 9) / 4.0);
    EXPECT_EQ(grid.getDyMinus(3, 4), 10 * (16 - 9) / 2.0);
    EXPECT_EQ(grid.getDyPlus(3, 4), 10 * (25 - 16) / 2.0);
    EXPECT_EQ(grid.getCurvature(3, 4), 2 / 0.25 + 20 / 4.0);
}

TEST(Differences, BecomeOneSidedAtTheEdges) {
    FullLevelSet2D grid;
    fill(grid, 5, 4, [](int x, int y) { return double(x * x * x + y * y); });
    EXPECT_EQ(grid.getDxMinus(0, 1), grid.getDxPlus(0, 1));
    EXPECT_EQ(grid.getDxCentral(0, 1), 1.0);
    EXPECT_EQ(grid.getDxPlus(4, 1), grid.getDxMinus(4, 1));
    EXPECT_EQ(grid.getDxCentral(4, 1), 64.0 - 27.0);
    EXPECT_EQ(grid.getDyCentral(1, 0), 1.0);
    EXPECT_EQ(grid.getDyPlus(1, 3), 9.0 - 4.0);
    // Mirrored: the curvature reads column 1 on both sides of column 0, and column 4 twice at column 4.
    EXPECT_EQ(grid.getCurvature(0, 1), (1 - 0 + 1) + 2);
    EXPECT_EQ(grid.getCurvature(4, 1), (64 - 128 + 27) + 2);
}

TEST(Differences, UpwindIsBackwardOnlyForPositiveSpeed) {
    FullLevelSet2D grid;
    fill(grid, 5, 5, [](int x, int y) { return double(x * x + 3 * y * y); });
    EXPECT_EQ(grid.getDxUpwind(2, 2, 0.0), grid.getDxPlus(2, 2));
    EXPECT_EQ(grid.getDxUpwind(2, 2, 1e-300), grid.getDxMinus(2, 2));
    double dx = 0, dy = 0;
    EXPECT_EQ(grid.getCurvatureAndUpwind(2, 2, -1, 2, dx, dy), 8.0);
    EXPECT_EQ(dx, grid.getDxPlus(2, 2));
    EXPECT_EQ(dy, grid.getDyMinus(2, 2));
}

TEST(Differences, AlongAnAxisOfOnePointAreZero) {
    FullLevelSet2D column;
    fill(column, 1, 4, [](int, int y) { return double(y * y); });
    for (int y = 0; y < 4; ++y) {
        EXPECT_EQ(column.getDxCentral(0, y), 0.0);
        EXPECT_EQ(column.getDxUpwind(0, y, 1.0), 0.0);
        EXPECT_EQ(column.getDxUpwind(0, y, -1.0), 0.0);
    }
    EXPECT_EQ(column.getDyCentral(0, 2), (9.0 - 1.0) / 2);
}

TEST(Differences, GoThroughTheSlotsOfASubclass) {
    struct Overridden : FullLevelSet2D {
        double getDxPlus(int, int) const override { return 77.0; }
    };
    Overridden grid;
    fill(grid, 4, 4, [](int x, int) { return double(x); });
    EXPECT_EQ(grid.getDxMinus(0, 1), 77.0);
    EXPECT_EQ(grid.getDxCentral(0, 1), 77.0);
    EXPECT_EQ(grid.getDxUpwind(2, 1, -1.0), 77.0);
    EXPECT_EQ(grid.getDxMinus(1, 1), 1.0);
}

TEST(Differences, AreTheSameBitsOnBothPaths) {
    onRandomPairs(
        [](FullLevelSet2D& dense, SlowPath& slow) {
            std::vector<double> fast, plain;
            const auto collect = [](const FullLevelSet2D& g, std::vector<double>& out) {
                for (int y = 0; y < g.getHeight(); ++y)
                    for (int x = 0; x < g.getWidth(); ++x)
                        for (double d : {g.getDxCentral(x, y), g.getDxMinus(x, y), g.getDxPlus(x, y),
                                         g.getDyCentral(x, y), g.getDyMinus(x, y), g.getDyPlus(x, y),
                                         g.getCurvature(x, y)})
                            out.push_back(d);
            };
            collect(dense, fast);
            collect(slow, plain);
            ASSERT_EQ(bits(fast.data(), fast.size()), bits(plain.data(), plain.size()));
        },
        2);
}

}  // namespace
