#include <cmath>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"

namespace {

TEST(VolumeMotion, IsTheSameBitsOnBothPaths) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        for (int i = 0; i < 2; ++i) {
            dense.moveAlongCurvature();
            slow.moveAlongCurvature();
        }
        ASSERT_EQ(bits(dense), bits(slow));
        dense.moveAlongCurvatureImplicit();
        slow.moveAlongCurvatureImplicit();
        ASSERT_EQ(bits(dense), bits(slow));
    });
}

TEST(VolumeMotion, ShrinksABallByTheSquareOfItsRadius) {
    FullLevelSet3D grid;
    fill(grid, {40, 40, 40},
         [](int x, int y, int z) { return std::hypot(x - 19.6, y - 20.2, z - 19.9) - 15; });
    for (int i = 0; i < 12; ++i) grid.moveAlongCurvature();  // the time 2: r^2 = 225 - 8
    EXPECT_NEAR(std::hypot(19 - 19.6, 20 - 20.2, 34 - 19.9) - grid.get(19, 20, 34), std::sqrt(217.0), 0.02);
}

/// Gauss-Seidel as it is defined: point after point, in place.
void plainSweeps(FullLevelSet3D& grid) {
    const int w = grid.getWidth(), h = grid.getHeight(), d = grid.getDepth();
    const double hx = grid.getXSpace(), hy = grid.getYSpace(), hz = grid.getZSpace();
    FullLevelSet3D u;
    u = grid;
    const auto reflected = [](int c, int n) { return c < 0 ? 1 : c >= n ? n - 2 : c; };
    for (int sweep = 0; sweep < 15; ++sweep) {
        double sum = 0;
        for (int z = 0; z < d; ++z)
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const auto at = [&](int a, int b, int c) {
                        return u(reflected(a, w), reflected(b, h), reflected(c, d));
                    };
                    const double sumX = at(x + 1, y, z) + at(x - 1, y, z),
                                 sumY = at(x, y + 1, z) + at(x, y - 1, z),
                                 sumZ = at(x, y, z + 1) + at(x, y, z - 1);
                    const double l = sumX / (hx * hx) + sumY / (hy * hy) + sumZ / (hy * hy);
                    const double half = 1 / (hx * hx) + 1 / (hy * hy) + 1 / (hz * hz), g = half + half + 1.0;
                    const double old = grid.get(x, y, z), r = old + l - g * u(x, y, z);
                    sum = sum + r * r;
                    u(x, y, z) = (-old - l) / -g;
                }
        if (std::sqrt(sum / (w * h)) < 0.0001) break;
    }
    grid = u;
}

TEST(VolumeMotion, ImplicitStepIsPlainSweepsBitForBit) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        if (dense.getWidth() < 2 || dense.getHeight() < 2 || dense.getDepth() < 2) return;
        dense.moveAlongCurvatureImplicit();
        plainSweeps(slow);
        ASSERT_EQ(bits(dense), bits(slow));
    });
    // Values that cancel: a zero has the sign that the negated sums give it.
    FullLevelSet3D zeros, plain;
    fill(zeros, {4, 2, 6}, [](int x, int y, int z) { return (x + y + z) % 2 == 0 ? -0.0 : 0.0; });
    plain = zeros;
    zeros.moveAlongCurvatureImplicit();
    plainSweeps(plain);
    EXPECT_EQ(bits(zeros), bits(plain));
    FullLevelSet3D constant;
    fill(constant, {6, 5, 4}, [](int, int, int) { return 3.0; });
    constant.moveAlongCurvatureImplicit();
    for (int i = 0; i < 120; ++i) EXPECT_EQ(constant.data()[i], 3.0);
}

TEST(VolumeMotion, BySpeedTakesTheSmallestLimitAndReturnsIt) {
    FullLevelSet3D grid;
    fill(grid, {3, 2, 2}, [](int x, int y, int z) { return x + y + z; });
    const auto move = [&](double rate, double limit) {
        return grid.moveWithCurvature([=](LevelSet3D* levelSet, int x, int y, int z, double* largest) {
            EXPECT_EQ(levelSet->get(x, y, z), x + y + z);
            *largest = x == 1 && z == 1 ? limit : 9;
            return rate;
        });
    };
    EXPECT_EQ(move(1.0, 0.25), 0.25);
    for (int i = 0; i < 12; ++i) {
        const int sum = i % 3 + i / 3 % 2 + i / 6;
        EXPECT_EQ(grid.data()[i], sum + 0.25);
    }
    EXPECT_THROW(grid.moveWithCurvature({}), boost::bad_function_call);
    EXPECT_EQ(FullLevelSet3D().moveWithCurvature({}), 1e11);
}

TEST(VolumeMotion, BySpeedEndsWhenTheCallbackMakesAnotherGridOfIt) {
    FullLevelSet3D grid;
    fill(grid, {9, 8, 7}, [](int x, int y, int z) { return x - y + z; });
    int calls = 0;
    EXPECT_EQ(grid.moveWithCurvature([&](LevelSet3D*, int, int, int, double* limit) {
        if (++calls == 5) {
            grid.release();
            grid.init(9, 8, 7, 1, 1, 1);
        }
        return *limit = 1.0;
    }),
              0.0);
    EXPECT_EQ(calls, 5);
    for (int i = 0; i < 9 * 8 * 7; ++i) ASSERT_EQ(grid.data()[i], 0.0);
}

}  // namespace
