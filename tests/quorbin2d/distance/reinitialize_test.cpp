#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/band_support.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double enclosed(const FullLevelSet2D& field) {
    double sum = 0;
    for (const auto& polygon : quorbin::contours(field)) sum += quorbin::area(polygon);
    return sum;
}

/// A disc off the grid's centre; scale times a field whose slope is 1 at its edge alone.
struct Disc {
    double x, y, radius;
    double distance(double px, double py) const { return std::hypot(px - x, py - y) - radius; }
    double steep(double px, double py) const {
        return ((px - x) * (px - x) + (py - y) * (py - y) - radius * radius) / (2 * radius);
    }
};

/// Mean error of a level set where the true distance is below three of the larger spacing.
double meanErrorNear(const LevelSet2D& field, const Disc& disc, int width, int height) {
    const double hx = field.getXSpace(), hy = field.getYSpace();
    double sum = 0;
    int count = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double distance = disc.distance(x * hx, y * hy);
            if (std::abs(distance) >= 3 * std::max(hx, hy) || !field.have(x, y)) continue;
            sum += std::abs(field.get(x, y) - distance);
            ++count;
        }
    return sum / count;
}

TEST(Reinitialize, IsOfThirdOrderBesideTheInterfaceWhateverTheSlopeAndTheSpacings) {
    for (const double scale : {1.0, 0.01, 100.0})
        for (const double ratio : {1.0, 3.0}) {
            double last = 0;
            for (const int n : {40, 80, 160}) {
                const double h = 1.0 / n;
                const Disc disc{0.503, 0.498, 0.3};
                FullLevelSet2D field;
                const int height = static_cast<int>(n / ratio);
                fill(
                    field, n, height, [&](int x, int y) { return scale * disc.steep(x * h, y * h * ratio); },
                    h, h * ratio);
                quorbin::reinitialize(field);
                const double error = meanErrorNear(field, disc, n, height);
                // A second call measures from a distance instead of a quadratic, which cubics fit exactly.
                if (ratio == 1) {
                    EXPECT_LT(error, 1e-5 * h);
                    EXPECT_TRUE(quorbin::reinitialize(field));
                    EXPECT_LT(meanErrorNear(field, disc, n, height), 1e-3 * h);
                } else if (last > 0) {
                    EXPECT_LT(error, last / 6) << ratio << ' ' << n;
                }
                last = error;
            }
        }
}

TEST(Reinitialize, AHundredTimesLeaveADiscWhereItIs) {
    const Disc disc{64.37, 63.79, 40};
    FullLevelSet2D field;
    fill(field, 128, 128, [&](int x, int y) { return disc.distance(x, y); });
    const double before = enclosed(field);
    FastLevelSet2D band = quorbin::bandOf(field, false);
    for (int i = 0; i < 100; ++i) {
        quorbin::reinitialize(field);
        quorbin::reinitialize(band);
    }
    EXPECT_NEAR(enclosed(field) / before, 1, 3e-6);
    EXPECT_NEAR(quorbin::area(quorbin::contours(band).at(0)) / before, 1, 2e-5);
}

TEST(Reinitialize, CornersStaySharpAndDoNotDrift) {
    for (const double turn : {0.0, 0.4, 0.8, 1.1}) {
        FullLevelSet2D field;
        const auto distance = [&](int px, int py) {
            const double x = px - 32.37, y = py - 31.79, c = std::cos(turn), s = std::sin(turn);
            const double u = std::abs(c * x + s * y) - 15.3, v = std::abs(c * y - s * x) - 15.3;
            return std::hypot(std::max(u, 0.0), std::max(v, 0.0)) + std::min(std::max(u, v), 0.0);
        };
        fill(field, 64, 64, distance);
        const double before = enclosed(field);
        quorbin::reinitialize(field);
        for (int y = 0; y < 64; ++y)
            for (int x = 0; x < 64; ++x) EXPECT_NEAR(field.get(x, y), distance(x, y), 0.3);
        for (int i = 1; i < 50; ++i) quorbin::reinitialize(field);
        EXPECT_NEAR(enclosed(field) / before, 1, turn == 0 ? 1e-6 : 5e-4) << turn;
    }
}

TEST(Reinitialize, KeepsEverySideAndMakesEveryValueFinite) {
    std::mt19937 random(5);
    std::uniform_int_distribution<int> kind(0, 9);
    for (int round = 0; round < 300; ++round) {
        FullLevelSet2D field, before;
        fillRandom(field, 1 + round % 7, 1 + round % 11, random, round % 2 == 0, 0.5, 1.5);
        for (int y = 0; y < field.getHeight(); ++y)
            for (int x = 0; x < field.getWidth(); ++x) {
                const int k = kind(random);
                if (k < 3 && round % 3 == 0) field(x, y) = k == 0 ? kNaN : k == 1 ? HUGE_VAL : -1e300;
            }
        before = field;
        const auto isInside = [](double value) { return value <= 0; };
        try {
            quorbin::reinitialize(field);
        } catch (const quorbin::NoInterface&) {
            EXPECT_EQ(bits(field), bits(before));
            continue;
        }
        for (int y = 0; y < field.getHeight(); ++y)
            for (int x = 0; x < field.getWidth(); ++x) {
                EXPECT_TRUE(std::isfinite(field.get(x, y)));
                EXPECT_EQ(isInside(field.get(x, y)), isInside(before.get(x, y)));
            }
    }
}

TEST(Reinitialize, ABandGetsTheDistancesOfTheGridAndTheWidthAskedFor) {
    const Disc disc{40.37, 39.79, 20};
    FullLevelSet2D field;
    fill(
        field, 160, 80, [&](int x, int y) { return disc.distance(0.5 * x, y); }, 0.5, 1);
    FastLevelSet2D band = quorbin::bandOf(field, false);
    quorbin::ReinitializeOptions options;
    options.width = 5;
    quorbin::reinitialize(field);
    quorbin::reinitialize(band, options);
    quorbin::reinitialize(band, options);
    int count = 0;
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 160; ++x) {
            EXPECT_TRUE(band.have(x, y) || std::abs(field.get(x, y)) >= 5);
            if (!band.have(x, y)) continue;
            EXPECT_LT(std::abs(field.get(x, y)), 6.1);
            EXPECT_NEAR(band.get(x, y), field.get(x, y), 0.01);
            ++count;
        }
    EXPECT_EQ(count, band.size());
}

TEST(Reinitialize, ABandEndsWhereTheGridCutItOff) {
    for (const double slope : {0.0, 0.3, 1.0}) {
        FullLevelSet2D field;
        fill(field, 40, 80, [&](int x, int y) { return (y - 20.6 - slope * x) / std::hypot(1.0, slope); });
        FastLevelSet2D band = quorbin::bandOf(field, false);
        for (int i = 0; i < 20; ++i) quorbin::reinitialize(band);
        for (const auto& bucket : band.points().buckets)
            for (const auto& entry : bucket) {
                EXPECT_TRUE(entry.x >= -3 && entry.x <= 42) << slope;
                const double distance = (entry.y - 20.6 - slope * entry.x) / std::hypot(1.0, slope);
                EXPECT_NEAR(entry.value, distance, entry.x > 5 && entry.x < 34 ? 1e-2 : 1) << slope;
            }
    }
}

TEST(Reinitialize, ThrowsWithTheLevelSetAsItWas) {
    const Disc disc{16.37, 15.79, 10};
    FullLevelSet2D field, empty;
    fill(field, 32, 32, [&](int x, int y) { return disc.distance(x, y); });
    FastLevelSet2D band = quorbin::bandOf(field, false);
    const BandContent content = contentOf(band.points());
    quorbin::ReinitializeOptions wide;
    for (const double width : {-1.0, kNaN, HUGE_VAL}) {
        wide.width = width;
        EXPECT_THROW(quorbin::reinitialize(band, wide), std::invalid_argument);
    }
    EXPECT_TRUE(contentOf(band.points()) == content);
    EXPECT_THROW(quorbin::reinitialize(empty), std::invalid_argument);
    empty.init(0, 5, 1, 1);
    EXPECT_THROW(quorbin::reinitialize(empty), quorbin::NoInterface);
    FastLevelSet2D nothing;
    EXPECT_THROW(quorbin::reinitialize(nothing), quorbin::NoInterface);
}

}  // namespace
