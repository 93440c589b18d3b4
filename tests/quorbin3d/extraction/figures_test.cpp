#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/shapes.h"
#include "quorbin3d/dense_support.h"

namespace {

struct Ball {
    double x, y, z, radius;
    double distance(double px, double py, double pz) const {
        return std::hypot(px - x, py - y, pz - z) - radius;
    }
};

void fillBall(FullLevelSet3D& grid, Size3D size, const Ball& ball, double h = 1) {
    fill(
        grid, size, [&](int x, int y, int z) { return ball.distance(x * h, y * h, z * h); }, h, h, h);
}

double volumeOf(double radius) { return 4 * kPi / 3 * radius * radius * radius; }

/// Volume that two balls of this radius, so far apart, have in common.
double lens(double radius, double apart) {
    return kPi / 12 * (4 * radius + apart) * (2 * radius - apart) * (2 * radius - apart);
}

TEST(Measure3D, OfBallsAndEllipsoidsConvergesToSecondOrder) {
    // Half axes a, a, c of an ellipsoid, whose surface and integral of mean curvature have closed forms.
    for (const double c : {0.3, 0.2})
        for (const double ratio : {1.0, 2.0}) {
            const double a = 0.3, e = std::sqrt(std::max(1 - c * c / (a * a), 1e-16));
            const double area = 2 * kPi * a * a + kPi * c * c / e * std::log((1 + e) / (1 - e));
            const double curvature = 2 * kPi * (c + a * std::asin(e) / e);
            double last[3] = {};
            for (const int n : {24, 48}) {
                const double h = 1.0 / n;
                FullLevelSet3D field;
                fill(
                    field, {n, n, static_cast<int>(n / ratio)},
                    [&](int x, int y, int z) {
                        return std::hypot((x * h - 0.503) / a, (y * h - 0.498) / a,
                                          (z * h * ratio - 0.491) / c) -
                               1;
                    },
                    h, h, h * ratio);
                const auto figures = quorbin::measure(field);
                const double errors[3] = {std::abs(figures.volume / (4 * kPi / 3 * a * a * c) - 1),
                                          std::abs(figures.surfaceArea / area - 1),
                                          std::abs(figures.totalMeanCurvature / curvature - 1)};
                for (int k = 0; k < 3; ++k) {
                    EXPECT_LT(errors[k], 12 * h * h * ratio * ratio);
                    if (last[k] > 0) {
                        EXPECT_LT(errors[k], last[k] / 3.3) << k << ' ' << c << ' ' << ratio;
                    }
                    last[k] = errors[k];
                }
                EXPECT_NEAR(figures.centroid.z, 0.491, h * h);
                EXPECT_NEAR(figures.lowest.x, 0.203, 4 * h * h);
                const auto banded = quorbin::measure(quorbin::bandOf(field, false));
                EXPECT_NEAR(banded.volume, figures.volume, 1e-12);
                EXPECT_NEAR(banded.totalMeanCurvature, figures.totalMeanCurvature, 1e-9);
            }
        }
}

TEST(Measure3D, OfACubeInTheGridAndAtItsFacesIsExact) {
    FullLevelSet3D field;
    for (const double size : {8.0, 100.0}) {
        fill(field, {25, 25, 25}, [&](int x, int y, int z) {
            return std::max({std::abs(x - 12), std::abs(y - 12), std::abs(z - 12)}) - size -
                   1e-13;  // triangles of almost no area
        });
        const double side = std::min(2 * size, 24.0);
        const auto figures = quorbin::measure(field);
        EXPECT_NEAR(figures.volume, side * side * side, 1e-6);
        EXPECT_NEAR(figures.surfaceArea, 6 * side * side, 1e-6);
        EXPECT_NEAR(figures.totalMeanCurvature, 3 * kPi * side, 1e-6);
    }
    EXPECT_EQ(quorbin::measure(FastLevelSet3D()).volume, 0);
}

TEST(Sets3D, OfTwoBallsHaveTheVolumesOfTheFormula) {
    const double ball = volumeOf(10), both = lens(10, 9);
    FullLevelSet3D a, b;
    fillBall(a, {36, 28, 28}, {13.1, 13.7, 14.2, 10});
    fillBall(b, {36, 28, 28}, {22.1, 13.7, 14.2, 10});
    const FastLevelSet3D p = quorbin::bandOf(a, false), q = quorbin::bandOf(b, false);
    const auto volume = [](const auto& field) { return quorbin::measure(field).volume; };
    const double tolerance = 0.012 * ball;
    EXPECT_NEAR(volume(quorbin::unite(a, b)), 2 * ball - both, tolerance);
    EXPECT_NEAR(volume(quorbin::unite(p, q)), 2 * ball - both, tolerance);
    EXPECT_NEAR(volume(quorbin::intersect(a, b)), both, tolerance);
    EXPECT_NEAR(volume(quorbin::intersect(p, q)), both, tolerance);
    EXPECT_NEAR(volume(quorbin::subtract(a, b)), ball - both, tolerance);
    EXPECT_NEAR(volume(quorbin::subtract(p, q)), ball - both, tolerance);
    EXPECT_NEAR(volume(quorbin::complement(a)), 35 * 27 * 27 - ball, tolerance);
    for (const auto& result : {quorbin::compare(a, b), quorbin::compare(p, q)}) {
        EXPECT_NEAR(result.dice, both / ball, 5e-3);
        EXPECT_NEAR(result.symmetricDifference, 2 * (ball - both), 2 * tolerance);
        EXPECT_NEAR(result.fromFirst.largest, 9, 0.02);
        EXPECT_NEAR(result.fromSecond.largest, 9, 0.02);
        // ∫ |√(181 + 180 t) − 10| dt / 2 over t from −1 to 1
        EXPECT_NEAR(result.meanDistance, 4.5, 0.02);
    }
    const auto same = quorbin::compare(a, a);
    EXPECT_EQ(same.dice, 1);
    EXPECT_LT(same.hausdorffDistance, 1e-9);
    b.init(36, 28, 27, 1, 1, 1);
    EXPECT_THROW(quorbin::unite(a, b), std::invalid_argument);
}

TEST(Offset3D, OfACubeHasTheVolumeOfSteinersFormula) {
    const double s = 16.6;
    FullLevelSet3D field;
    fill(field, {48, 48, 48}, [&](int x, int y, int z) {
        return std::max({std::abs(x - 23.4), std::abs(y - 23.6), std::abs(z - 23.7)}) - s / 2;
    });
    const FastLevelSet3D band = quorbin::bandOf(field, false);
    for (const double d : {5.0, 12.0, -3.0}) {
        const double expected =
            d < 0 ? std::pow(s + 2 * d, 3) : s * s * s + 6 * s * s * d + 3 * kPi * s * d * d + volumeOf(d);
        const double tolerance = d < 0 ? 0.04 : 0.012;  // edges are cut by a third of a sample's area
        EXPECT_NEAR(quorbin::measure(quorbin::offset(field, d)).volume / expected, 1, tolerance) << d;
        EXPECT_NEAR(quorbin::measure(quorbin::offset(band, d)).volume / expected, 1, tolerance) << d;
    }
    EXPECT_EQ(quorbin::opened(band, 9).size(), 0);
}

TEST(Pieces3D, TableLargestAndHoles) {
    const Ball large{16, 16, 16, 11}, hole{16.2, 15.7, 16.1, 5}, small{38.3, 15.6, 15.8, 6};
    FullLevelSet3D field;
    fill(field, {48, 32, 32}, [&](int x, int y, int z) {
        return std::min(std::max(large.distance(x, y, z), -hole.distance(x, y, z)), small.distance(x, y, z));
    });
    const auto pieces = quorbin::pieces(field);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_NEAR(pieces[0].figures.volume / (volumeOf(11) - volumeOf(5)), 1, 0.01);
    EXPECT_NEAR(pieces[1].figures.volume / volumeOf(6), 1, 0.02);
    EXPECT_NEAR(pieces[1].figures.centroid.x, 38.3, 0.01);
    EXPECT_LE(field(pieces[1].inside.x, pieces[1].inside.y, pieces[1].inside.z), 0);
    EXPECT_NEAR(quorbin::measure(field).volume, pieces[0].figures.volume + pieces[1].figures.volume, 1e-8);
    EXPECT_EQ(quorbin::pieces(quorbin::largestPieces(field, 1)).size(), 1U);
    EXPECT_EQ(bits(quorbin::withoutHolesBelow(field, 500)), bits(field));
    const auto filled = quorbin::withoutHolesBelow(field, 540);
    EXPECT_NEAR(quorbin::measure(filled).volume / (volumeOf(11) + volumeOf(6)), 1, 0.02);
}

TEST(Sample3D, OfABallConverges) {
    const Ball ball{0.503, 0.498, 0.49, 0.3};
    double last = 0;
    for (const int n : {24, 48}) {
        const double h = 1.0 / n;
        FullLevelSet3D field;
        fillBall(field, {n, n, n}, ball, h);
        FastLevelSet3D band = quorbin::bandOf(field, false);
        quorbin::ReinitializeOptions wide;
        wide.width = 6 * h;
        quorbin::reinitialize(band, wide);
        quorbin::reinitialize(field);
        double worst = 0;
        for (int i = 0; i < 100; ++i) {
            const double z = -1 + (i + 0.5) / 50, across = std::sqrt(1 - z * z), far = h * (i % 9 - 4);
            const brin::Vec3<double> normal(across * std::cos(i), across * std::sin(i), z),
                centre(ball.x, ball.y, ball.z);
            const std::vector<brin::Vec3<double>> at = {centre + normal * (0.3 + far)};
            for (const auto& sample : {quorbin::sample(field, at).at(0), quorbin::sample(band, at).at(0)}) {
                const auto wrong = sample.closest - (centre + normal * 0.3),
                           turned = sample.gradient - normal;
                worst = std::max({worst, std::abs(sample.value - far), std::sqrt(dot(wrong, wrong)),
                                  h * std::sqrt(dot(turned, turned))});
            }
        }
        EXPECT_LT(worst, 0.04 * h);
        if (last > 0) {
            EXPECT_LT(worst, last / 4);
        }
        last = worst;
    }
}

TEST(Pieces3D, OperationsOnTheSmallestGridsEndWell) {
    std::mt19937 random(2);
    std::uniform_int_distribution<int> integer(-2, 2);
    for (int shape = 0; shape < 64; ++shape)
        for (int round = 0; round < 4; ++round) {
            FullLevelSet3D a, b;
            const Size3D size = {shape % 4, shape / 4 % 4, shape / 16};
            for (FullLevelSet3D* field : {&a, &b})
                fill(*field, size, [&](int, int, int) {
                    return round == 3 && integer(random) == 0 ? kNaN : integer(random) + 0.1 * (round % 2);
                });
            double sum = 0;
            for (const auto& piece : quorbin::pieces(a)) sum += piece.figures.volume;
            EXPECT_NEAR(sum, quorbin::measure(a).volume, 1e-9);
            const auto united = quorbin::unite(a, b), rest = quorbin::subtract(united, a);
            EXPECT_LE(quorbin::pieces(quorbin::largestPieces(rest, 1)).size(), 1U);
            EXPECT_LE(quorbin::withoutHolesBelow(quorbin::closed(a, 1), 5).getDepth(), 3);
            const auto result = quorbin::compare(a, b);
            EXPECT_TRUE(result.dice >= -1e-9 && result.dice <= 1 + 1e-9) << result.dice;
            EXPECT_EQ(quorbin::sample(a, {{0, 0, 0}, {0.5, 0.5, 0.5}}).size(), 2U);
            const FastLevelSet3D p = quorbin::bandOf(a, false), q = quorbin::bandOf(b, false);
            EXPECT_GE(quorbin::intersect(p, q).size() + quorbin::closed(q, 1).size(), 0);
            quorbin::compare(p, q);
        }
}

}  // namespace
