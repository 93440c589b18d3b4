#include <cmath>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/shapes.h"

namespace {

TEST(Measure, OfADiscAndARingConvergesToSecondOrder) {
    for (const double ratio : {1.0, 3.0}) {
        double last = 0;
        for (const int n : {60, 120, 240}) {
            const double h = 1.0 / n;
            FullLevelSet2D field;
            fill(
                field, n, static_cast<int>(n / ratio),
                [&](int x, int y) {
                    return std::abs(std::hypot(x * h - 0.503, y * h * ratio - 0.498) - 0.25) - 0.1;
                },
                h, h * ratio);
            const auto figures = quorbin::measure(field);
            const double error = std::abs(figures.area / (kPi * (0.35 * 0.35 - 0.15 * 0.15)) - 1) +
                                 std::abs(figures.perimeter / (2 * kPi * 0.5) - 1);
            if (last > 0) {
                EXPECT_LT(error, last / 3);
            }
            last = error;
            EXPECT_NEAR(figures.centroid.x, 0.503, h * h);
            EXPECT_NEAR(figures.lowest.x, 0.153, h * h);
            EXPECT_NEAR(figures.highest.x, 0.853, h * h);
            EXPECT_NEAR(figures.centroid.y, 0.498, h * h * ratio * ratio);
            EXPECT_NEAR(figures.highest.y, 0.848, h * h * ratio * ratio);
            EXPECT_EQ(figures.totalCurvature, 0);  // an outline and a hole
            const auto banded = quorbin::measure(quorbin::bandOf(field, false));
            EXPECT_NEAR(banded.area, figures.area, 1e-12);
            EXPECT_NEAR(banded.perimeter, figures.perimeter, 1e-12);
        }
        EXPECT_LT(last, 1e-3);
    }
}

TEST(Measure, TakesTheBorderAndEmptiness) {
    FullLevelSet2D field;
    fill(
        field, 11, 6, [](int, int) { return -1; }, 0.5, 2);
    const auto full = quorbin::measure(field);
    EXPECT_NEAR(full.area, 50, 1e-12);
    EXPECT_NEAR(full.perimeter, 30, 1e-12);
    EXPECT_NEAR(full.totalCurvature, 2 * kPi, 1e-12);
    EXPECT_NEAR(full.centroid.y, 5, 1e-12);
    fill(field, 11, 6, [](int, int) { return kNaN; });
    const auto none = quorbin::measure(field);
    EXPECT_EQ(none.area + none.perimeter + none.totalCurvature, 0);
    EXPECT_TRUE(std::isnan(none.centroid.x) && std::isnan(none.lowest.y));
    EXPECT_EQ(quorbin::measure(FastLevelSet2D()).area, 0);
}

TEST(Compare, ShiftedDiscsByTheFormulas) {
    const double r = 0.2, apart = 0.1;
    const double both =
        2 * r * r * std::acos(apart / (2 * r)) - apart / 2 * std::sqrt(4 * r * r - apart * apart);
    // The mean of |√(r² + s² + 2rs cos t) − r| over t, by a sum that converges at once but for the kinks.
    double mean = 0;
    for (int i = 0; i < 100000; ++i) {
        const double t = 2 * kPi * (i + 0.5) / 100000;
        mean += std::abs(std::sqrt(r * r + apart * apart + 2 * r * apart * std::cos(t)) - r) / 100000;
    }
    FullLevelSet2D a, b;
    const double h = 0.01;
    fillDisc(a, 80, 80, {0.35, 0.4, r}, h, h);
    fillDisc(b, 80, 80, {0.45, 0.4, r}, h, h);
    for (double* value = b.data(); value != b.data() + 80 * 80; ++value) *value *= 7;  // any slope
    const auto expectFormulas = [&](const quorbin::Comparison& result) {
        EXPECT_NEAR(result.dice, both / (kPi * r * r), 1e-3);
        EXPECT_NEAR(result.symmetricDifference, 2 * (kPi * r * r - both), 3e-4);
        for (const auto& distance : {result.fromFirst, result.fromSecond}) {
            EXPECT_NEAR(distance.mean, mean, 1e-4);
            EXPECT_NEAR(distance.largest, apart, 1e-4);
        }
        EXPECT_NEAR(result.meanDistance, mean, 1e-4);
        EXPECT_NEAR(result.hausdorffDistance, apart, 1e-4);
    };
    expectFormulas(quorbin::compare(a, b));
    expectFormulas(quorbin::compare(quorbin::bandOf(a, false), quorbin::bandOf(b, false)));
}

TEST(Compare, ToldApartAreDirectionsAndEqualsAreEqual) {
    FullLevelSet2D one, two, more, nothing;
    fillDisc(one, 96, 48, {20, 24, 10});
    fillDisc(more, 96, 48, {70, 24, 10});
    two = quorbin::unite(one, more);
    fill(nothing, 96, 48, [](int, int) { return kNaN; });
    const auto same = quorbin::compare(two, two);
    EXPECT_EQ(same.dice, 1);
    EXPECT_EQ(same.symmetricDifference, 0);
    EXPECT_LT(same.hausdorffDistance, 1e-9);
    const auto part = quorbin::compare(one, two);
    EXPECT_NEAR(part.dice, 2.0 / 3, 1e-4);
    EXPECT_LT(part.fromFirst.largest, 0.01);
    EXPECT_NEAR(part.fromSecond.largest, 50, 0.05);
    EXPECT_NEAR(part.hausdorffDistance, 50, 0.05);
    const auto empty = quorbin::compare(one, nothing);
    EXPECT_EQ(empty.dice, 0);
    EXPECT_NEAR(empty.symmetricDifference, 100 * kPi, 1);
    EXPECT_TRUE(std::isnan(empty.meanDistance) && std::isnan(empty.hausdorffDistance));
    EXPECT_EQ(quorbin::compare(nothing, nothing).dice, 1);
    EXPECT_EQ(quorbin::compare(FastLevelSet2D(), quorbin::bandOf(one)).dice, 0);
}

TEST(Pieces, OfDiscsAndARingWithTheirFigures) {
    FullLevelSet2D field;
    const Disc small{10.3, 30.2, 4}, inner{60.1, 30.3, 6};
    fill(
        field, 100, 60,
        [&](int x, int y) {
            const double ring = std::abs(std::hypot(x - 60.1, y - 30.3) - 18) - 5;
            return std::min({small.distance(0.5 * x, y), inner.distance(x, y), ring});
        },
        0.5, 1);
    const auto pieces = quorbin::pieces(field);
    ASSERT_EQ(pieces.size(), 3U);
    const auto& ring = pieces[0].figures;
    EXPECT_NEAR(ring.area, 0.5 * kPi * (23 * 23 - 13 * 13), 1);
    EXPECT_NEAR(ring.centroid.x, 30.05, 1e-2);
    EXPECT_NEAR(pieces[2].figures.area, kPi * 16, 0.5);
    EXPECT_NEAR(pieces[2].figures.lowest.x, 6.3, 0.02);
    EXPECT_NEAR(pieces[1].figures.area, 0.5 * kPi * 36, 0.5);
    double sum = 0;
    for (const auto& piece : pieces) {
        sum += piece.figures.area;
        EXPECT_LE(field(piece.inside.x, piece.inside.y), 0);
        EXPECT_NEAR(0.5 * static_cast<double>(piece.samples) / piece.figures.area, 1, 0.05);
    }
    EXPECT_NEAR(quorbin::measure(field).area, sum, 1e-9);
    const auto kept = quorbin::pieces(quorbin::largestPieces(field, 2));
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_NEAR(kept[0].figures.area, ring.area, 0.1);
    EXPECT_NEAR(kept[1].figures.area, pieces[1].figures.area, 0.1);
    EXPECT_EQ(bits(quorbin::largestPieces(field, 3)), bits(field));
    EXPECT_TRUE(quorbin::pieces(quorbin::largestPieces(field, 0)).empty());
}

TEST(Compare, TheBorderIsNoInterface) {
    FullLevelSet2D a, b;
    fill(a, 32, 32, [](int x, int) { return x - 10.3; });
    fill(b, 32, 32, [](int x, int) { return x - 14.8; });
    const auto result = quorbin::compare(a, b);
    EXPECT_NEAR(result.meanDistance, 4.5, 1e-9);
    EXPECT_NEAR(result.hausdorffDistance, 4.5, 1e-9);
    EXPECT_NEAR(result.symmetricDifference, 4.5 * 31, 1e-9);
}

TEST(Pieces, TouchByNoDiagonalAndHolesByBoth) {
    for (const bool isRising : {false, true}) {
        FullLevelSet2D field;
        const auto isOne = [=](int x, int y) {
            return (x == 2 && y == (isRising ? 2 : 3)) || (x == 3 && y == (isRising ? 3 : 2));
        };
        fill(field, 6, 6, [=](int x, int y) { return isOne(x, y) ? -1 : 1; });
        ASSERT_EQ(quorbin::pieces(field).size(), 2U);
        EXPECT_NEAR(quorbin::pieces(field)[1].figures.area, 0.5, 1e-12);
        EXPECT_EQ(quorbin::contours(field).size(), isRising ? 2U : 1U);
        fill(field, 6, 6, [=](int x, int y) { return isOne(x, y) ? 1 : -1; });
        // One hole of more than 0.9, not two of 0.5.
        EXPECT_EQ(bits(quorbin::withoutHolesBelow(field, 0.9)), bits(field));
        EXPECT_EQ(quorbin::measure(quorbin::withoutHolesBelow(field, 2)).area, 25);
    }
}

TEST(Pieces, HolesAreFilledBySize) {
    FullLevelSet2D field;
    const Disc holes[] = {{20.2, 20.4, 4}, {40.3, 24.1, 7}, {62, 30, 8}};  // the last one reaches the border
    fill(field, 64, 48, [&](int x, int y) {
        double value = -100;
        for (const Disc& hole : holes) value = std::max(value, -hole.distance(x, y));
        return value;
    });
    field(30, 10) = kNaN;                 // a hole too
    field(10, 30) = field(11, 31) = 0.5;  // touch by a diagonal: one hole, of twice 1/8 and a bit
    const auto areaWithout = [&](double size) {
        return quorbin::measure(quorbin::withoutHolesBelow(field, size)).area;
    };
    const double all = quorbin::measure(field).area, first = kPi * 16, second = kPi * 49;
    EXPECT_EQ(bits(quorbin::withoutHolesBelow(field, 0)), bits(field));
    EXPECT_NEAR(areaWithout(40) - all, 4.0, 2.5);
    EXPECT_NEAR(areaWithout(60) - areaWithout(40), first, 0.8);
    EXPECT_NEAR(areaWithout(1e9) - areaWithout(60), second, 0.8);
    EXPECT_EQ(quorbin::measure(quorbin::withoutHolesBelow(field, 1e9)).totalCurvature, 2 * kPi);
    EXPECT_THROW(quorbin::withoutHolesBelow(field, kNaN), std::invalid_argument);
}

TEST(Pieces, OperationsOnTheSmallestGridsEndWell) {
    std::mt19937 random(1);
    for (int width = 0; width < 4; ++width)
        for (int height = 0; height < 4; ++height)
            for (int round = 0; round < 12; ++round) {
                FullLevelSet2D a, b;
                fillRandom(a, width, height, random, round % 2 == 0);
                fillRandom(b, width, height, random, round % 3 == 0);
                if (width * height > 1 && round > 6) a(width - 1, 0) = kNaN;
                const auto united = quorbin::unite(a, b), kept = quorbin::largestPieces(a, 1);
                EXPECT_EQ(quorbin::pieces(quorbin::offset(united, -9)).size(),
                          0U + (quorbin::pieces(united).size() > 0 &&
                                quorbin::pieces(quorbin::complement(united)).empty()));
                EXPECT_LE(quorbin::pieces(kept).size(), 1U);
                EXPECT_LE(quorbin::withoutHolesBelow(a, 5).getWidth(), 3);
                const auto result = quorbin::compare(a, b);
                EXPECT_TRUE(result.dice >= -1e-12 && result.dice <= 1 + 1e-12) << result.dice;
                EXPECT_GE(result.symmetricDifference, -1e-12);
                EXPECT_EQ(quorbin::sample(a, {{0, 0}, {0.5, 0.5}}).size(), 2U);
                const FastLevelSet2D p = quorbin::bandOf(a, false), q = quorbin::bandOf(b, false);
                EXPECT_GE(quorbin::unite(p, q).size() + quorbin::subtract(p, q).size(), 0);
                EXPECT_GE(quorbin::opened(p, 1).size(), 0);
                quorbin::compare(p, q);
                EXPECT_GE(quorbin::measure(a).perimeter, 0);
            }
}

}  // namespace
