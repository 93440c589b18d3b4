#include <algorithm>
#include <cmath>
#include <functional>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/band_support.h"

namespace {

using Steps = quorbin::CurvatureFlowOptions::Steps;
using Shape = std::function<double(double, double)>;

constexpr double kPi = 3.14159265358979323846;

double disc(double x, double y) { return std::hypot(x - 32.37, y - 31.79) - 20; }
double star(double x, double y) {
    return std::hypot(x - 32.37, y - 31.79) - 18 - 4 * std::sin(5 * std::atan2(y - 31.79, x - 32.37));
}
double square(double px, double py) {
    const double x = std::abs(px - 32.37) - 15.3, y = std::abs(py - 31.79) - 15.3;
    return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0);
}

template <class LevelSet>
double enclosed(const LevelSet& field) {
    double sum = 0;
    for (const auto& polygon : quorbin::contours(field)) sum += quorbin::area(polygon);
    return sum;
}

FullLevelSet2D gridOf(const Shape& shape, double stretch = 1) {
    FullLevelSet2D field;
    fill(
        field, 64, static_cast<int>(64 / stretch), [&](int x, int y) { return shape(x, y * stretch); }, 1,
        stretch);
    quorbin::reinitialize(field);
    return field;
}

/// By how much the area falls too fast until half of it is gone: every closed curve loses 2π in unit time.
template <class LevelSet>
double excess(LevelSet& field, Steps steps) {
    quorbin::CurvatureFlowOptions options;
    options.steps = steps;
    const double before = enclosed(field), time = before / (4 * kPi);
    const auto result = quorbin::curvatureFlow(field, time, options);
    EXPECT_EQ(result.time, time);
    EXPECT_FALSE(result.hasVanished || result.isEnded);
    return (before - enclosed(field)) / (2 * kPi * time) - 1;
}

TEST(CurvatureFlow, EveryClosedCurveLosesTwoPiInUnitTime) {
    const struct {
        Shape shape;
        double stretch, explicitly, inLargeSteps;
    } cases[] = {{disc, 1, 5e-4, 5e-3}, {star, 1, 1e-3, 6e-3},   {square, 1, 3e-3, 6e-3},
                 {disc, 2, 2e-3, 6e-3}, {star, 2, 1e-2, 1.5e-2}, {disc, 3, 4e-3, 8e-3}};
    for (const auto& c : cases) {
        FullLevelSet2D small = gridOf(c.shape, c.stretch), large = gridOf(c.shape, c.stretch);
        EXPECT_LT(std::abs(excess(small, Steps::kExplicit)), c.explicitly) << c.stretch;
        EXPECT_LT(std::abs(excess(large, Steps::kLarge)), c.inLargeSteps) << c.stretch;
    }
    FastLevelSet2D band = quorbin::bandOf(gridOf(disc), false);
    quorbin::reinitialize(band);
    EXPECT_LT(std::abs(excess(band, Steps::kExplicit)), 5e-4);
}

// Explicit steps while the outline is rough, large ones later: as true as explicit ones, in fewer steps.
TEST(CurvatureFlow, FastestStepsGrowAsTheOutlineGetsSmooth) {
    const auto rough = [](double x, double y) {
        return std::sin(12.9898 * x + 78.233 * y) > 0.3 ? disc(x, y) + 3 : disc(x, y) - 3;
    };
    FullLevelSet2D byFastest = gridOf(rough), byExplicit = gridOf(rough);
    const double time = enclosed(byFastest) / (4 * kPi);
    quorbin::CurvatureFlowOptions options;
    const int fastest = quorbin::curvatureFlow(byFastest, time, options).steps;
    options.steps = Steps::kExplicit;
    const int explicitly = quorbin::curvatureFlow(byExplicit, time, options).steps;
    EXPECT_GT(fastest, 40);
    EXPECT_LT(fastest, explicitly / 2);
    EXPECT_NEAR(enclosed(byFastest) / enclosed(byExplicit), 1, 0.01);
}

TEST(CurvatureFlow, IsOfSecondOrder) {
    double last = 1;
    for (const int n : {24, 48, 96}) {
        FullLevelSet2D field;
        fill(field, n, n,
             [&](int x, int y) { return std::hypot(x - 0.5 * n - 0.37, y - 0.5 * n + 0.21) - 0.3 * n; });
        quorbin::reinitialize(field);
        const double error = std::abs(excess(field, Steps::kExplicit));
        EXPECT_LT(error, last / 3.5) << n;
        last = error;
    }
}

TEST(CurvatureFlow, KeepsTheAreaAndMakesADiscOfAnyShape) {
    for (const Shape& shape : {Shape(star), Shape(square)}) {
        FullLevelSet2D field;
        fill(field, 64, 64, [&](int x, int y) { return shape(x, y); });
        const double before = enclosed(field);
        quorbin::CurvatureFlowOptions options;
        options.keepsSize = true;
        quorbin::curvatureFlow(field, 400, options);
        const auto polygons = quorbin::contours(field);
        ASSERT_EQ(polygons.size(), 1U);
        EXPECT_NEAR(enclosed(field) / before, 1, 1e-9);
        EXPECT_NEAR(quorbin::length(polygons[0].outline) / (2 * std::sqrt(kPi * before)), 1, 3e-3);
    }
}

TEST(SmoothMask, GivesADiscOfPixelsItsOutlineBack) {
    for (const double shift : {0.0, 0.3})
        for (const bool keepsSides : {true, false}) {
            const double cx = 50.37 - shift, cy = 49.79 + shift;
            FullLevelSet2D field, mask;
            fill(mask, 100, 100, [&](int x, int y) { return std::hypot(x - cx, y - cy) <= 40 ? -0.5 : 0.5; });
            EXPECT_TRUE(quorbin::isMask(mask));
            field = mask;
            quorbin::SmoothMaskOptions options;
            options.keepsSides = keepsSides;
            EXPECT_TRUE(quorbin::smoothMask(field, options));
            EXPECT_FALSE(quorbin::isMask(field));
            const auto polygons = quorbin::contours(field);
            ASSERT_EQ(polygons.size(), 1U);
            double sum = 0, largest = 0;
            for (const auto& p : polygons[0].outline) {
                const double error = std::abs(std::hypot(p.x - cx, p.y - cy) - 40);
                sum += error;
                largest = std::max(largest, error);
            }
            EXPECT_LT(sum / static_cast<double>(polygons[0].outline.size()), 0.08);
            EXPECT_LT(largest, 0.46);
            EXPECT_NEAR(enclosed(field) / enclosed(mask), 1, 2e-4);
            for (int i = 0; i < 100 * 100 && keepsSides; ++i)
                ASSERT_EQ(field.data()[i] <= 0, mask.data()[i] <= 0);
        }
}

TEST(CurvatureFlow, NoiseGoesAndTheShapeStays) {
    FullLevelSet2D noisy = gridOf(disc);
    std::mt19937 random(3);
    std::uniform_int_distribution<int> any(4, 59);
    for (int i = 0; i < 60; ++i) {
        const int x = any(random), y = any(random);
        noisy(x, y) = -noisy(x, y);
    }
    const double whole = enclosed(gridOf(disc));
    quorbin::CurvatureFlowOptions options;
    options.noiseRadius = 3;
    quorbin::curvatureFlow(noisy, 40, options);
    const auto polygons = quorbin::contours(noisy);
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_TRUE(polygons[0].holes.empty());
    EXPECT_NEAR(enclosed(noisy) / whole, 1, 0.04);  // curvature alone would take 2π 40: a fifth
}

TEST(CurvatureFlow, TellsWhenTheLastPieceIsGone) {
    FullLevelSet2D field = gridOf(disc);
    FastLevelSet2D band = quorbin::bandOf(field, false);
    const auto onGrid = quorbin::curvatureFlow(field, 1000), onBand = quorbin::curvatureFlow(band, 1000);
    for (const auto& result : {onGrid, onBand}) {
        EXPECT_TRUE(result.hasVanished);
        EXPECT_NEAR(result.time, 200, 5);
    }
    EXPECT_EQ(band.size(), 0);
    EXPECT_TRUE(quorbin::contours(field).empty());
}

TEST(CurvatureFlow, TurnsAwayWhatItCannotDoAndEndsWithTheFieldAsItWas) {
    FullLevelSet2D field = gridOf(disc), before, empty;
    before = field;
    FastLevelSet2D band = quorbin::bandOf(field, false);
    const BandContent points = contentOf(band.points());
    quorbin::CurvatureFlowOptions ended, negative, large, noise;
    ended.progress = [](int done, int all) { return done < all / 2; };
    EXPECT_TRUE(quorbin::curvatureFlow(field, 100, ended).isEnded);
    EXPECT_TRUE(quorbin::curvatureFlow(band, 100, ended).isEnded);
    negative.rate = -1;
    large.steps = Steps::kLarge;
    noise.noiseRadius = 2;
    EXPECT_THROW(quorbin::curvatureFlow(field, 1, negative), std::invalid_argument);
    EXPECT_THROW(quorbin::curvatureFlow(field, -1), std::invalid_argument);
    EXPECT_THROW(quorbin::curvatureFlow(field, HUGE_VAL), std::invalid_argument);
    EXPECT_THROW(quorbin::curvatureFlow(band, 1, large), std::invalid_argument);
    EXPECT_THROW(quorbin::curvatureFlow(band, 1, noise), std::invalid_argument);
    EXPECT_EQ(bits(field), bits(before));
    EXPECT_TRUE(contentOf(band.points()) == points);
    empty.init(4, 4, 1, 1);
    EXPECT_THROW(quorbin::curvatureFlow(empty, 1), quorbin::NoInterface);
}

TEST(CurvatureFlow, GridsOfAnySizeStayFinite) {
    std::mt19937 random(9);
    for (int round = 0; round < 60; ++round) {
        FullLevelSet2D field;
        fillRandom(field, 1 + round % 5, 1 + round % 7, random, round % 2 == 0, 1, 2);
        quorbin::CurvatureFlowOptions options;
        options.steps = round % 3 == 0 ? Steps::kLarge : Steps::kExplicit;
        options.keepsSize = round % 4 == 0;
        try {
            quorbin::curvatureFlow(field, 3, options);
        } catch (const quorbin::NoInterface&) {
            continue;
        }
        for (int i = 0; i < field.getWidth() * field.getHeight(); ++i)
            ASSERT_TRUE(std::isfinite(field.data()[i])) << round;
    }
}

}  // namespace
