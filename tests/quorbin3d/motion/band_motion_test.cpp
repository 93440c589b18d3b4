#include <cmath>

#include "quorbin3d/band_support.h"

namespace {

using Speed = boost::function<double(LevelSet3D*, int, int, int, double*)>;
using Coefficients =
    boost::function<void(LevelSet3D*, int, int, int, double&, double&, double&, double&, double&)>;

void fillBlock(FastLevelSet3D& band, int size) {
    for (int z = 0; z < size; ++z)
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) band(x, y, z) = x + 10 * y + 100 * z;
}

TEST(VolumeBandMotion, IsTheSameBitsInTheSameOrderOnBothPaths) {
    const Speed speed = [](LevelSet3D* levelSet, int x, int y, int z, double* limit) {
        EXPECT_EQ(*limit, 0.0);
        *limit = 0.1 + 0.01 * (x & 3);
        return levelSet->getCurvature(x, y, z) + 0.1 * levelSet->getDzUpwind(x, y, z, y);
    };
    const Coefficients coefficients = [](LevelSet3D* levelSet, int x, int y, int z, double& k, double& vx,
                                         double& vy, double& vz, double& s) {
        EXPECT_EQ(k + vx + vy + vz + s, 0.0);
        k = 0.5 + 0.1 * (x & 3);
        vx = 0.2 * (y & 1) - 0.1;
        vy = 0.05 * (x % 3);
        vz = -0.1 * (z & 1);
        s = 0.01 * levelSet->get(x, y, z);
    };
    onVolumeBandPairs([&](FastLevelSet3D& band, SlowBand3D& slow) {
        const double length = band.averageNormalLength(), slowLength = slow.averageNormalLength();
        ASSERT_EQ(bits(&length, 1), bits(&slowLength, 1));
        const double step = band.moveWithCurvature(speed);
        ASSERT_EQ(step, slow.moveWithCurvature(speed));
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
        for (FastLevelSet3D* one : {&band, static_cast<FastLevelSet3D*>(&slow)})
            one->moveWithCurvatureImplicit(coefficients, 0.3, 4);
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
        band.moveAlongCurvature();
        slow.moveAlongCurvature();
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
    });
}

TEST(VolumeBandMotion, StripsALayerAtEachCurvatureStep) {
    FullLevelSet3D grid;
    fill(grid, {7, 7, 7}, [](int x, int y, int z) { return x == 3 && y == 3 && z == 3 ? 1 : -1; });
    FastLevelSet3D band;
    testing::internal::CaptureStdout();
    band.initTo(grid, 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "initted 27\n");
    band.moveAlongCurvature();
    EXPECT_EQ(band.size(), 1);
    EXPECT_DOUBLE_EQ(band.get(3, 3, 3), -0.9);
    band.moveAlongCurvature();
    EXPECT_EQ(band.size(), 0);
}

TEST(VolumeBandMotion, BySpeedMovesInteriorPointsBy95PercentOfTheSmallestLimit) {
    FastLevelSet3D band;
    fillBlock(band, 4);
    int calls = 0;
    const double step = band.moveWithCurvature([&](LevelSet3D*, int, int, int, double* limit) {
        EXPECT_EQ(*limit, 0.0);
        *limit = ++calls == 2 ? 1.0 : 3.0;
        return 1.0;
    });
    EXPECT_EQ(calls, 8);
    EXPECT_EQ(step, 0.95);
    EXPECT_EQ(band.get(1, 1, 1), 111.95);
    EXPECT_EQ(band.get(0, 1, 1), 110);
    EXPECT_THROW(band.moveWithCurvature({}), boost::bad_function_call);
    EXPECT_EQ(band.get(1, 1, 1), 111.95);
    FastLevelSet3D thin;
    thin(0, 0, 0) = 1;
    EXPECT_EQ(thin.moveWithCurvature([](LevelSet3D*, int, int, int, double*) { return 1.0; }), 0.0);
}

TEST(VolumeBandMotion, ImplicitStepSolvesItsEquation) {
    FastLevelSet3D band;
    fillBlock(band, 3);
    int calls = 0;
    const auto count = [&](LevelSet3D*, int, int, int, double&, double&, double&, double&, double&) {
        ++calls;
    };
    band.moveWithCurvatureImplicit(count, 0.5, 0);
    EXPECT_EQ(calls, 0);
    band.moveWithCurvatureImplicit(count, 0.5, 9);  // all coefficients 0
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(band.get(1, 1, 1), 111);
    band.moveWithCurvatureImplicit(
        [](LevelSet3D*, int, int, int, double& k, double&, double&, double&, double& s) {
            k = 1;  // of a linear field nothing
            s = 1;
        },
        0.5, 50);
    EXPECT_NEAR(band.get(1, 1, 1), 111 + 0.5 / (1 + 0.5 * 6), 1e-4);
    // phi (1 + 2 sum w + |c|) = old + dt s + sum w (neighbours) + |c| times the neighbour that it blows from.
    band(1, 1, 1) = 111;
    band.moveWithCurvatureImplicit(
        [](LevelSet3D*, int, int, int, double& k, double& vx, double& vy, double& vz, double&) {
            k = 0.8;
            vx = 0.3;
            vy = -0.2;
            vz = 0.1;
        },
        0.5, 50);
    const double neighbours = 0.4 * 6 * 111 + 0.15 * 112 + 0.1 * 101 + 0.05 * 211;
    EXPECT_DOUBLE_EQ(band.get(1, 1, 1), (111 + neighbours) / (1 + 0.4 * 6 + 0.15 + 0.1 + 0.05));
    EXPECT_THROW(band.moveWithCurvatureImplicit({}, 0.5, 1), boost::bad_function_call);
    EXPECT_EQ(band.get(0, 1, 1), 110);
}

/// Does the same on both paths, and again under a callback that writes, adds or takes away points.
TEST(VolumeBandMotion, SurvivesCallbacksThatChangeTheBand) {
    const auto implicit = [](FastLevelSet3D& band, int& calls, auto change) {
        band.moveWithCurvatureImplicit(
            [&](LevelSet3D* levelSet, int, int, int, double& k, double&, double&, double&, double&) {
                k = 1;
                if (++calls == 1) change(*levelSet);
            },
            0.5, 9);
    };
    const auto write = [](LevelSet3D& levelSet) { levelSet(2, 2, 2) = 7; };
    const auto add = [](LevelSet3D& levelSet) {
        for (int y = 0; y < 5; ++y)
            for (int z = 0; z < 5; ++z) levelSet(5, y, z) = 7;
    };
    for (const bool adds : {false, true}) {
        FastLevelSet3D band;
        SlowBand3D slow;
        int calls = 0, slowCalls = 0;
        fillBlock(band, 5);
        fillBlock(slow, 5);
        implicit(band, calls, [&](LevelSet3D& levelSet) { adds ? add(levelSet) : write(levelSet); });
        implicit(slow, slowCalls, [&](LevelSet3D& levelSet) { adds ? add(levelSet) : write(levelSet); });
        EXPECT_EQ(calls, 27);
        EXPECT_EQ(slowCalls, 27);
        EXPECT_EQ(band.size(), 125);
        EXPECT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
    }
    FastLevelSet3D band;
    fillBlock(band, 4);
    FastLevelSet3D empty;
    band.moveWithCurvature([&](LevelSet3D*, int, int, int, double* limit) {
        *limit = 1;
        band = empty;
        return 1.0;
    });
    EXPECT_LE(band.size(), 1);
}

/// Up to where the march spread, band and dense grid hold the same distances, after any number of steps.
TEST(VolumeBandMotion, IsThatOfTheDenseGridAsFarAsTheMarchSpreads) {
    for (const auto& [hx, hy, hz] : {std::array{1.0, 1.0, 1.0}, {0.5, 0.8, 0.6}}) {
        FullLevelSet3D grid;
        fill(
            grid, {48, 46, 44},
            [hx = hx, hy = hy, hz = hz](int x, int y, int z) {
                return std::min(std::hypot((x - 18) * hx, (y - 22) * hy, (z - 21) * hz) - 12 * hx,
                                std::hypot((x - 38) * hx, (y - 20) * hy, (z - 23) * hz) - 5 * hx);
            },
            hx, hy, hz);
        FastLevelSet3D band;
        assignBandOf(band, grid, true);
        grid.ensureSignedDistanceFMM();
        const double limit = 0.95 / (2 / (hx * hx) + 2 / (hy * hy) + 2 / (hz * hz));
        for (int step = 0; step < 8; ++step) {
            band.moveAlongCurvature();
            grid.moveWithCurvature([=](LevelSet3D* levelSet, int x, int y, int z, double* largest) {
                *largest = limit;
                return levelSet->getCurvature(x, y, z);
            });
            band.ensureSignedDistanceFMM();
            grid.ensureSignedDistanceFMM();
        }
        int compared = 0;
        double furthest = 0;
        for (const auto& bucket : band.points().buckets)
            for (const auto& point : bucket)
                if (std::abs(point.value) <= 2.1 * std::max({hx, hy, hz})) {
                    furthest =
                        std::max(furthest, std::abs(point.value - grid.get(point.x, point.y, point.z)));
                    ++compared;
                }
        EXPECT_GT(compared, 2000);
        EXPECT_LT(furthest, 1e-12);
    }
}

}  // namespace
