#include <quorbin2d.h>

#include <cmath>

#include <gtest/gtest.h>

namespace {

TEST(Eikonal, SolvesTheQuadraticInThePlane) {
    EXPECT_EQ(quadraticFMM(0, 0, 1, 1), 0.7071067811865476);
    EXPECT_EQ(quadraticFMM(0, 1, 1, 1), 1.0);
    EXPECT_EQ(quadraticFMM(1, 1, 1, 1), 1.7071067811865475);
    EXPECT_EQ(quadraticFMM(0, 0, 0.5, 1), 0.447213595499958);
    EXPECT_TRUE(std::isnan(quadraticFMM(0, 2, 1, 1)));
    EXPECT_TRUE(std::isnan(quadraticFMM_2(0, 2, 1, 1)));
    EXPECT_EQ(quadraticFMM_2(0.3, 0.4, 0.7, 1.3), quadraticFMM(0.3, 0.4, 0.7, 1.3));
}

TEST(Eikonal, SolvesTheQuadraticInSpaceOrHasNoDistance) {
    EXPECT_DOUBLE_EQ(quadraticFMM(0, 0, 0, 1, 1, 1), 1 / std::sqrt(3.0));
    EXPECT_EQ(quadraticFMM(0, 0, 5, 1, 1, 1), 1e11);
    EXPECT_EQ(quadraticFMM(-2, -2, -2, 1, 1, 1), 1e11);
    const double t = quadraticFMM(0.2, 0.5, 0.3, 0.7, 1.3, 0.9);
    const auto square = [](double v) { return v * v; };
    EXPECT_NEAR(square((t - 0.2) / 0.7) + square((t - 0.5) / 1.3) + square((t - 0.3) / 0.9), 1.0, 1e-14);
}

}  // namespace
