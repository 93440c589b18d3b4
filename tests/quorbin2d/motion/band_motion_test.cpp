#include <cmath>
#include <set>

#include "quorbin2d/band_support.h"

namespace {

using Speed = boost::function<double(LevelSet2D*, int, int, double*)>;
using Coefficients = boost::function<void(LevelSet2D*, int, int, double&, double&, double&, double&)>;

void fillBlock(FastLevelSet2D& band, int size) {
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) band(x, y) = x + 10 * y;
}

TEST(BandMotion, IsTheSameBitsInTheSameOrderOnBothPaths) {
    const Speed speed = [](LevelSet2D* levelSet, int x, int y, double* limit) {
        EXPECT_EQ(*limit, 0.0);
        *limit = 0.1 + 0.01 * (x & 3);
        return levelSet->getCurvature(x, y) + 0.1 * levelSet->getDxUpwind(x, y, y);
    };
    const Coefficients coefficients = [](LevelSet2D* levelSet, int x, int y, double& k, double& vx,
                                         double& vy, double& s) {
        k = 0.5 + 0.1 * (x & 3);
        vx = 0.2 * (y & 1) - 0.1;
        vy = 0.05 * (x % 3);
        s = 0.01 * levelSet->get(x, y);
    };
    onBandPairs([&](FastLevelSet2D& band, SlowBand& slow) {
        band.moveWithCurvature(speed);
        slow.moveWithCurvature(speed);
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
        for (FastLevelSet2D* one : {&band, static_cast<FastLevelSet2D*>(&slow)})
            one->moveWithCurvatureImplicit(coefficients, 0.3, 4);
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
        band.moveAlongCurvature();
        slow.moveAlongCurvature();
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
    });
}

TEST(BandMotion, StripsALayerAtEachCurvatureStep) {
    FastLevelSet2D band;
    fillBlock(band, 5);
    band(2, 2) += 1;
    band.moveAlongCurvature();
    EXPECT_EQ(band.size(), 9);
    EXPECT_DOUBLE_EQ(band.get(2, 2), 22 + 1 - 4 * 0.2375);
    EXPECT_DOUBLE_EQ(band.get(1, 2), 21 + 0.2375);
    EXPECT_EQ(band.get(1, 1), 11);
    band.moveAlongCurvature();
    EXPECT_EQ(band.size(), 1);
    band.moveAlongCurvature();
    EXPECT_EQ(band.size(), 0);
}

TEST(BandMotion, BySpeedMovesInteriorPointsBy95PercentOfTheSmallestLimit) {
    FastLevelSet2D band;
    fillBlock(band, 4);
    int calls = 0;
    band.moveWithCurvature([&](LevelSet2D* levelSet, int x, int y, double* limit) {
        EXPECT_EQ(*limit, 0.0);
        EXPECT_EQ(levelSet->get(x, y), x + 10 * y);
        *limit = ++calls == 2 ? 1.0 : 3.0;
        return 1.0;
    });
    EXPECT_EQ(calls, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x) {
            const bool interior = x % 3 != 0 && y % 3 != 0;
            EXPECT_EQ(band.get(x, y), x + 10 * y + (interior ? 0.95 : 0.0));
        }
    EXPECT_THROW(band.moveWithCurvature({}), boost::bad_function_call);
    EXPECT_EQ(band.get(1, 1), 11.95);
    // What a callback has taken away is not moved.
    band.moveWithCurvature([&](LevelSet2D*, int, int, double*) {
        band.moveAlongCurvature();
        return 1.0;
    });
    EXPECT_LE(band.size(), 4);
}

TEST(BandMotion, CountsPointsThatACallbackAddsAsNeighboursOnBothPaths) {
    const Speed reader = [](LevelSet2D* levelSet, int x, int y, double* limit) {
        *limit = 1;
        return (*levelSet)(x + 2, y) + (*levelSet)(x, y + 3) + 1;  // adds what is absent
    };
    onBandPairs([&](FastLevelSet2D& band, SlowBand& slow) {
        band.moveWithCurvature(reader);
        slow.moveWithCurvature(reader);
        ASSERT_TRUE(contentOf(band.points()) == contentOf(slow.points()));
    });
}

/// An override that works on the band while the band is working.
struct RestlessBand : FastLevelSet2D {
    mutable int calls = 0;
    double getCurvature(int x, int y) const override {
        if (++calls == 3) const_cast<RestlessBand*>(this)->ensureSignedDistance();
        return FastLevelSet2D::getCurvature(x, y);
    }
};

TEST(BandMotion, SurvivesAnOverrideThatComesBackToTheBand) {
    FullLevelSet2D grid;
    fill(grid, 30, 30, [](int x, int y) { return std::hypot(x - 15.2, y - 14.7) - 9; });
    RestlessBand band;
    assignBandOf(band, grid, true);
    band.moveAlongCurvature();
    std::set<std::pair<int, int>> points;
    for (const auto& bucket : band.points().buckets)
        for (const auto& entry : bucket) EXPECT_TRUE(points.emplace(entry.x, entry.y).second);
    EXPECT_GT(points.size(), 100U);
}

TEST(BandMotion, ImplicitStepRelaxesItsOwnEquation) {
    FastLevelSet2D band;
    fillBlock(band, 3);
    int calls = 0;
    const Coefficients nothing = [&](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& s) {
        ++calls;
        k = vx = vy = s = 0;
    };
    band.moveWithCurvatureImplicit(nothing, 0.5, 0);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(band.get(1, 1), 11);
    band.moveWithCurvatureImplicit(nothing, 0.5, 1);
    EXPECT_DOUBLE_EQ(band.get(1, 1), 11 / (1 + 2 * 0.5 * 2));
    EXPECT_EQ(band.get(0, 1), 10);
    // Solved to the tolerance: (D - dt (vx wx + vy wy)) phi = old + s + dt k L + dt (vx ax + vy ay).
    band(1, 1) = 11;
    band.moveWithCurvatureImplicit(
        [](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& s) {
            k = 0.8;
            vx = 0.3;
            vy = -0.2;
            s = 0.25;
        },
        0.5, 50);
    const double laplacian = 10 + 12 + 21 + 1, d = 1 + 2 * 0.5 * 2;
    const double right = 11 + 0.25 + 0.5 * 0.8 * laplacian + 0.5 * (0.3 * -10 + -0.2 * 21);
    EXPECT_DOUBLE_EQ(band.get(1, 1), right / (d - 0.5 * (0.3 * 1 + -0.2 * -1)));
    EXPECT_THROW(band.moveWithCurvatureImplicit({}, 0.5, 1), boost::bad_function_call);
    FastLevelSet2D empty;
    empty.moveWithCurvatureImplicit(nothing, 0.5, 2000000000);
}

/// Up to where the march spread, band and dense grid hold the same distances to the bit, after any number of
/// steps.
TEST(BandMotion, IsThatOfTheDenseGridAsFarAsTheMarchSpreads) {
    for (const auto& [hx, hy] : {std::pair{1.0, 1.0}, {0.5, 0.8}}) {
        FullLevelSet2D grid;
        fill(
            grid, 96, 90,
            [hx = hx, hy = hy](int x, int y) {
                return std::min(std::hypot((x - 40) * hx, (y - 45) * hy) - 25 * hx,
                                std::hypot((x - 76) * hx, (y - 40) * hy) - 8 * hx);
            },
            hx, hy);
        FastLevelSet2D band;
        assignBandOf(band, grid, true);
        grid.ensureSignedDistanceFMM();
        const double limit = 0.95 / (2 / (hx * hx) + 2 / (hy * hy));
        for (int step = 0; step < 30; ++step) {
            band.moveAlongCurvature();
            grid.moveWithCurvature([=](LevelSet2D* levelSet, int x, int y, double* largest) {
                *largest = limit;
                return levelSet->getCurvature(x, y);
            });
            band.ensureSignedDistanceFMM();
            grid.ensureSignedDistanceFMM();
        }
        int compared = 0;
        const double reach = 2.1 * std::max(hx, hy);
        for (const auto& bucket : band.points().buckets)
            for (const auto& point : bucket)
                if (std::abs(point.value) <= reach) {
                    EXPECT_EQ(point.value, grid.get(point.x, point.y)) << point.x << ", " << point.y;
                    ++compared;
                }
        EXPECT_GT(compared, 500);
    }
}

}  // namespace
