#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/shapes.h"

namespace {

double enclosed(const FullLevelSet2D& field) { return quorbin::measure(field).area; }
double enclosed(const FastLevelSet2D& band) { return quorbin::measure(band).area; }

/// Area that two discs of this radius, so far apart, have in common.
double lens(double radius, double apart) {
    return 2 * radius * radius * std::acos(apart / (2 * radius)) -
           apart / 2 * std::sqrt(4 * radius * radius - apart * apart);
}

/// Area of a square moved outward, and inward by a negative distance.
double offsetSquare(double side, double d) {
    return d < 0 ? (side + 2 * d) * (side + 2 * d) : side * side + 4 * side * d + kPi * d * d;
}

TEST(Sets, OfTwoDiscsHaveTheAreasOfTheFormulaToSecondOrder) {
    const double disc = kPi * 0.04, both = lens(0.2, 0.2);
    for (const double ratio : {1.0, 2.0})
        for (const int n : {50, 100}) {
            const double h = 1.0 / n, tolerance = 2 * h * h * ratio * ratio;
            const int height = static_cast<int>(n / ratio);
            FullLevelSet2D a, b;
            fillDisc(a, n, height, {0.4, 0.5, 0.2}, h, h * ratio);
            fillDisc(b, n, height, {0.6, 0.5, 0.2}, h, h * ratio);
            const FastLevelSet2D bandA = quorbin::bandOf(a, false), bandB = quorbin::bandOf(b, false);
            EXPECT_NEAR(enclosed(quorbin::unite(a, b)), 2 * disc - both, tolerance);
            EXPECT_NEAR(enclosed(quorbin::intersect(a, b)), both, tolerance);
            EXPECT_NEAR(enclosed(quorbin::subtract(a, b)), disc - both, tolerance);
            const double grid = (n - 1) * h * (height - 1) * h * ratio;
            EXPECT_NEAR(enclosed(quorbin::complement(a)), grid - disc, tolerance);
            EXPECT_NEAR(enclosed(quorbin::unite(bandA, bandB)), 2 * disc - both, tolerance);
            EXPECT_NEAR(enclosed(quorbin::intersect(bandA, bandB)), both, tolerance);
            EXPECT_NEAR(enclosed(quorbin::subtract(bandA, bandB)), disc - both, tolerance);
            EXPECT_NEAR(enclosed(quorbin::complement(bandA)), -disc, tolerance);  // a hole of the plane
        }
}

TEST(Sets, OfBandsKnowTheSideOfPointsThatAreNotStored) {
    FullLevelSet2D large, small, far;
    fillDisc(large, 96, 96, {48, 48, 40});
    fillDisc(small, 96, 96, {48, 50, 8});
    fillDisc(far, 200, 96, {150, 48, 20});
    const FastLevelSet2D a = quorbin::bandOf(large, false), b = quorbin::bandOf(small, false),
                         c = quorbin::bandOf(far, false), empty;
    EXPECT_NEAR(enclosed(quorbin::unite(a, b)), enclosed(a), 0.1);
    EXPECT_NEAR(enclosed(quorbin::intersect(a, b)), enclosed(b), 0.1);
    EXPECT_NEAR(enclosed(quorbin::subtract(a, b)), enclosed(a) - enclosed(b), 0.1);
    EXPECT_EQ(quorbin::subtract(b, a).size(), 0);
    EXPECT_NEAR(enclosed(quorbin::unite(a, c)), enclosed(a) + enclosed(c), 0.1);
    EXPECT_EQ(quorbin::intersect(a, c).size(), 0);
    EXPECT_NEAR(enclosed(quorbin::unite(a, empty)), enclosed(a), 0.1);
    EXPECT_EQ(quorbin::intersect(a, empty).size(), 0);
    EXPECT_GT(quorbin::unite(a, b, 8).size(), 2 * quorbin::unite(a, b).size());
}

TEST(Sets, ChangeTheSideOfEverySampleAsTheyShould) {
    std::mt19937 random(3);
    const auto isInside = [](double value) { return value <= 0; };
    for (int round = 0; round < 100; ++round) {
        FullLevelSet2D a, b;
        const int width = 1 + round % 7, height = 1 + round % 5;
        fillRandom(a, width, height, random, round % 2 == 0);
        fillRandom(b, width, height, random, round % 3 == 0);
        a(0, 0) = kNaN;  // outside
        b(width - 1, 0) = kNaN;
        const auto united = quorbin::unite(a, b), common = quorbin::intersect(a, b),
                   rest = quorbin::subtract(a, b), other = quorbin::complement(a);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const bool inA = isInside(a(x, y)), inB = isInside(b(x, y));
                EXPECT_EQ(isInside(united.get(x, y)), inA || inB);
                EXPECT_EQ(isInside(common.get(x, y)), inA && inB);
                EXPECT_EQ(isInside(rest.get(x, y)), inA && !inB);
                EXPECT_EQ(isInside(other.get(x, y)), !inA);
                for (const auto* result : {&united, &common, &rest, &other})
                    EXPECT_FALSE(std::isnan(result->get(x, y)));
            }
    }
}

TEST(Sets, OfOtherGridsThrowNamingBoth) {
    FullLevelSet2D a, b;
    fillDisc(a, 8, 9, {4, 4, 2});
    fillDisc(b, 8, 9, {4, 4, 2}, 1, 0.25);
    for (const auto operation :
         {+[](const FullLevelSet2D&p, const FullLevelSet2D&q) { quorbin::unite(p, q); },
          +[](const FullLevelSet2D&p, const FullLevelSet2D&q) { quorbin::compare(p, q); }})
        try {
            operation(a, b);
            FAIL();
        } catch (const std::invalid_argument& error) {
            EXPECT_NE(std::string(error.what()).find("8 x 9 points with spacings 1 x 0.25"),
                      std::string::npos);
        }
    EXPECT_THROW(quorbin::intersect(quorbin::bandOf(a), quorbin::bandOf(b)), std::invalid_argument);
    EXPECT_THROW(quorbin::compare(quorbin::bandOf(a), quorbin::bandOf(b)), std::invalid_argument);
}

TEST(Offset, ASquareGetsRoundCornersOutwardAndKeepsThemInward) {
    for (const double turn : {0.0, 0.4})
        for (const bool isDistance : {false, true}) {
            // Where a corner lies in its cell is not known: the arcs around it err by part of a sample.
            const double side = 40.6;
            FullLevelSet2D field;
            fill(field, 128, 128, [&](int x, int y) {
                const double c = std::cos(turn), s = std::sin(turn);
                const double u = std::abs(c * (x - 63.6) + s * (y - 64.3)) - side / 2,
                             v = std::abs(c * (y - 64.3) - s * (x - 63.6)) - side / 2;
                const double beyond = isDistance ? std::hypot(std::max(u, 0.0), std::max(v, 0.0)) : 0;
                return beyond > 0 ? beyond : std::max(u, v);
            });
            const FastLevelSet2D band = quorbin::bandOf(field, false);
            for (const double d : {3.0, 10.0, 22.0, -5.0, -12.0}) {
                const double expected = offsetSquare(side, d);
                const double tolerance = 0.15 * 2 * kPi * std::abs(d) + 2;
                EXPECT_NEAR(enclosed(quorbin::offset(field, d)), expected, tolerance) << turn << ' ' << d;
                EXPECT_NEAR(enclosed(quorbin::offset(band, d)), expected, tolerance) << turn << ' ' << d;
            }
            const double rounded = side * side - (4 - kPi) * 64;
            EXPECT_NEAR(enclosed(quorbin::opened(field, 8)), rounded, 0.3 * 2 * kPi * 8);
            EXPECT_NEAR(enclosed(quorbin::opened(band, 8)), rounded, 0.3 * 2 * kPi * 8);
            EXPECT_NEAR(enclosed(quorbin::closed(field, 8)) / (side * side), 1, 3e-3);
        }
}

TEST(Offset, OfABandGoesAnyWayThereAndBack) {
    FullLevelSet2D field;
    fillDisc(field, 64, 64, {32, 32, 20});
    const FastLevelSet2D band = quorbin::bandOf(field, false), there = quorbin::offset(band, 100);
    EXPECT_NEAR(enclosed(there) / (kPi * 120 * 120), 1, 1e-4);
    EXPECT_NEAR(enclosed(quorbin::offset(there, -100)) / (kPi * 20 * 20), 1, 2e-3);
    EXPECT_EQ(quorbin::offset(band, -21).size(), 0);
    EXPECT_EQ(quorbin::opened(band, 21).size(), 0);
    EXPECT_EQ(enclosed(quorbin::opened(field, 21)), 0);
    EXPECT_EQ(enclosed(quorbin::offset(field, 100)), 63 * 63);
}

TEST(Offset, ClosingFillsAGapAndOpeningCutsABridge) {
    FullLevelSet2D a, b, bridge, apart, joined;
    fillDisc(a, 96, 48, {26, 24, 15});
    fillDisc(b, 96, 48, {60, 24, 15});
    fill(bridge, 96, 48,
         [](int x, int y) { return std::max(std::abs(x - 43.2) - 10, std::abs(y - 24.1) - 2); });
    apart = quorbin::unite(a, b);
    joined = quorbin::unite(apart, bridge);
    EXPECT_EQ(quorbin::pieces(quorbin::closed(apart, 8)).size(), 1U);
    EXPECT_EQ(quorbin::pieces(joined).size(), 1U);
    EXPECT_EQ(quorbin::pieces(quorbin::opened(joined, 4)).size(), 2U);
}

TEST(Offset, RefusesWhatIsNoDistanceOrRadius) {
    FullLevelSet2D field;
    fillDisc(field, 16, 16, {8, 8, 4});
    const FastLevelSet2D band = quorbin::bandOf(field);
    for (const double d : {kNaN, HUGE_VAL, -HUGE_VAL, 2e9}) {
        EXPECT_THROW(quorbin::offset(field, d), std::invalid_argument);
        EXPECT_THROW(quorbin::offset(band, d), std::invalid_argument);
    }
    for (const double radius : {-1.0, kNaN, HUGE_VAL}) {
        EXPECT_THROW(quorbin::opened(field, radius), std::invalid_argument);
        EXPECT_THROW(quorbin::closed(band, radius), std::invalid_argument);
    }
}

}  // namespace
