#include "quorbin2d/dense_support.h"

#include <cmath>

#include <gtest/gtest.h>

#include "textbook/march.h"

namespace {

std::vector<double> values(const FullLevelSet2D& grid) {
    return {grid.data(), grid.data() + static_cast<std::ptrdiff_t>(grid.getWidth()) * grid.getHeight()};
}

TEST(FirstDistance, IsTheNearestOfTheCrossings) {
    FullLevelSet2D grid;
    fill(
        grid, 3, 3, [](int x, int y) { return x == 1 && y == 1 ? -1.0
                                              : x == 2         ? 1.0
                                              : y == 2         ? 3.0
                                                               : -1.0; },
        2.0, 4.0);
    // Crossings half way to the right and a quarter of the way up: 1 and 1 in world units.
    EXPECT_EQ(grid.estimateDistanceInit(1, 1), 1 / std::sqrt(2.0));
    EXPECT_EQ(grid.estimateDistanceInit(0, 0), 1e11);
    EXPECT_EQ(grid.estimateDistanceInit(2, 0), 1.0);
}

TEST(Estimate, PrefersAPairAndIgnoresOneWithoutARoot) {
    FullLevelSet2D grid;
    grid.init(3, 3, 1.0, 1.0);
    double distances[9] = {};
    char states[9] = {};
    const auto at = [](int x, int y) { return y * 3 + x; };
    EXPECT_EQ(grid.estimateDistance(distances, states, 1, 1, 1), 1e11);
    distances[at(2, 1)] = 5.0;
    states[at(2, 1)] = 1;
    EXPECT_EQ(grid.estimateDistance(distances, states, 1, 1, 1), 6.0);
    distances[at(1, 2)] = 5.0;
    states[at(1, 2)] = 1;
    EXPECT_EQ(grid.estimateDistance(distances, states, 1, 1, 1), quadraticFMM(5, 5, 1, 1));
    distances[at(1, 2)] = 1.0;  // too far apart: no pair, so the nearer single one
    EXPECT_EQ(grid.estimateDistance(distances, states, 1, 1, 1), 2.0);
    states[at(1, 0)] = -1;  // the other side's
    EXPECT_EQ(grid.estimateDistance(distances, states, 1, 1, 1), 2.0);
    EXPECT_EQ(grid.estimateDistance(distances, states, -1, 1, 1), 1.0);
}

TEST(FastMarching, APlaneIsItsOwnDistance) {
    FullLevelSet2D grid;
    fill(grid, 9, 6, [](int x, int) { return 3 * (x - 2.5); });
    grid.ensureSignedDistanceFMM();
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 9; ++x) EXPECT_NEAR(grid.get(x, y), x - 2.5, 1e-14);
}

TEST(FastMarching, ACircleIsRightToFirstOrderInEachSpacing) {
    double lastError = 1;
    for (int n : {64, 128, 256}) {
        const double h = 2.0 / n;
        FullLevelSet2D grid;
        const auto exact = [=](int x, int y) { return std::hypot(x * h - 1.0, y * 2 * h - 1.0) - 0.6; };
        fill(
            grid, n, n / 2, [&](int x, int y) { return std::tanh(exact(x, y)); }, h, 2 * h);
        grid.ensureSignedDistanceFMM();
        double error = 0;
        for (int y = 0; y < n / 2; ++y)
            for (int x = 0; x < n; ++x) error = std::max(error, std::abs(grid.get(x, y) - exact(x, y)));
        EXPECT_LT(error, 0.75 * lastError) << n;
        lastError = error;
    }
    EXPECT_LT(lastError, 0.02);
}

TEST(FastMarching, AnExactZeroIsInsideAndKeepsTheSignThatTheFormulasGive) {
    FullLevelSet2D grid;
    fill(grid, 5, 5, [](int x, int y) { return double(std::max(x, y) - 2); });
    grid.ensureSignedDistanceFMM();
    EXPECT_EQ(grid.get(2, 0), 0.0);  // one crossing: -1 times -0 / (1 - 0)
    EXPECT_FALSE(std::signbit(grid.get(2, 0)));
    EXPECT_EQ(grid.get(2, 2), 0.0);  // two crossings: -1 times 1 / sqrt(infinity)
    EXPECT_TRUE(std::signbit(grid.get(2, 2)));
    EXPECT_EQ(grid.get(4, 0), 2.0);
}

TEST(FastMarching, AFieldWithoutAFrontEndsAsZeros) {
    for (double value : {1.0, -1.0}) {
        FullLevelSet2D grid;
        fill(grid, 5, 4, [=](int, int) { return value; });
        for (int i = 0; i < 2; ++i) {
            grid.moveAlongCurvature();  // leaves numbers in the scratch array
            grid.ensureSignedDistanceFMM();
        }
        EXPECT_EQ(bits(grid), std::vector<std::uint64_t>(20, 0));
    }
    FullLevelSet2D empty;
    empty.ensureSignedDistanceFMM();
}

TEST(FastMarching, IsTheSameBitsOnBothPathsAndInTheTextbook) {
    onRandomPairs([](FullLevelSet2D& dense, SlowPath& slow) {
        const auto expected = textbookMarch(values(dense), dense.getWidth(), dense.getHeight(),
                                            dense.getXSpace(), dense.getYSpace());
        dense.ensureSignedDistanceFMM();
        slow.ensureSignedDistanceFMM();
        ASSERT_EQ(bits(dense), bits(slow));
        ASSERT_EQ(bits(dense), bits(expected.data(), expected.size()));
    });
}

// Long marches with many equal distances, where the order of ties decides.
TEST(FastMarching, IsTheSameBitsAsTheTextbookFarFromTheFront) {
    std::mt19937 random(11);
    for (auto [hx, hy] : {std::pair{1.0, 1.0}, {1.0, 3.0}, {0.7, 0.7}}) {
        FullLevelSet2D grid;
        std::uniform_int_distribution<int> seed(0, 400);
        fill(
            grid, 150, 170, [&](int, int) { return seed(random) == 0 ? -1.0 : 1.0; }, hx, hy);
        const auto expected = textbookMarch(values(grid), 150, 170, hx, hy);
        grid.ensureSignedDistanceFMM();
        ASSERT_EQ(bits(grid), bits(expected.data(), expected.size()));
    }
}

}  // namespace
