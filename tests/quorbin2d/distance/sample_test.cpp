#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/shapes.h"

namespace {

using Point = brin::Vec2<double>;

double distanceBetween(const Point& a, const Point& b) { return std::hypot(a.x - b.x, a.y - b.y); }

TEST(Sample, OfADiscConvergesForGridsAndBands) {
    const Disc disc{0.503, 0.498, 0.3};
    const Point centre(disc.x, disc.y);
    for (const double ratio : {1.0, 2.0})
        for (const bool isBand : {false, true}) {
            double last[3] = {};
            for (const int n : {32, 64, 128}) {
                const double h = 1.0 / n;
                FullLevelSet2D field;
                fillDisc(field, n, static_cast<int>(n / ratio), disc, h, h * ratio);
                FastLevelSet2D band = quorbin::bandOf(field, false);
                quorbin::reinitialize(field);
                for (int y = 0; y < field.getHeight(); ++y)
                    for (int x = 0; x < n; ++x)
                        if (std::abs(field(x, y)) < 6 * h * ratio) band(x, y) = field(x, y);
                std::vector<Point> points, feet;
                for (int i = 0; i < 200; ++i) {
                    const Point normal(std::cos(0.1 * i), std::sin(0.1 * i));
                    points.push_back(centre + normal * (0.3 + 0.5 * h * ratio * (i % 13 - 6)));
                    feet.push_back(centre + normal * 0.3);
                }
                const auto samples = isBand ? quorbin::sample(band, points) : quorbin::sample(field, points);
                double worst[3] = {};
                for (std::size_t i = 0; i < points.size(); ++i) {
                    const double r = distanceBetween(points[i], centre);
                    const double errors[3] = {
                        std::abs(samples[i].value - (r - 0.3)),
                        h * distanceBetween(samples[i].gradient, (points[i] - centre) / r),
                        distanceBetween(samples[i].closest, feet[i])};
                    for (int k = 0; k < 3; ++k) worst[k] = std::max(worst[k], errors[k]);
                }
                for (int k = 0; k < 3; ++k) {
                    EXPECT_LT(worst[k], 0.04 * h * ratio);
                    if (last[k] > 0) {
                        EXPECT_LT(worst[k], last[k] / 4) << k << ' ' << n << ' ' << isBand;
                    }
                    last[k] = worst[k];
                }
            }
        }
}

TEST(Sample, IsExactForCubicsUpToTheBorderAndOnSamples) {
    FullLevelSet2D field;
    const auto cubic = [](double x, double y) { return x * x * x - 2 * x * y * y + y - 3; };
    fill(
        field, 7, 5, [&](int x, int y) { return cubic(0.1 * x, 0.3 * y); }, 0.1, 0.3);
    std::vector<Point> points;
    for (int i = 0; i <= 24; ++i)
        for (int j = 0; j <= 16; ++j) points.emplace_back(0.1 * i / 4, 0.3 * j / 4);
    const auto samples = quorbin::sample(field, points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto [x, y] = points[i];
        EXPECT_NEAR(samples[i].value, cubic(x, y), 1e-12);
        EXPECT_NEAR(samples[i].gradient.x, 3 * x * x - 2 * y * y, 1e-11);
        EXPECT_NEAR(samples[i].gradient.y, 1 - 4 * x * y, 1e-11);
    }
}

TEST(Sample, OutsideAndBesideNotANumberIsNotANumberAndGoesNoFurther) {
    FullLevelSet2D field;
    fill(field, 8, 8, [](int x, int y) { return x + 2 * y - 7.5; });
    field(6, 6) = kNaN;
    field(0, 3) = HUGE_VAL;
    const FastLevelSet2D band = quorbin::bandOf(field, false);
    const std::vector<Point> none = {{-0.01, 3}, {7.01, 3}, {3, kNaN}, {3, 1e300}, {6.5, 6.5}, {0.5, 3.5}};
    for (const auto& sample : quorbin::sample(field, none)) {
        EXPECT_TRUE(std::isnan(sample.value) && std::isnan(sample.gradient.x));
        EXPECT_TRUE(std::isnan(sample.closest.y));
    }
    // A plane is continued as it is.
    for (const auto& p : std::vector<Point>{{4.5, 6.5}, {4.9, 4.9}, {1.5, 3.5}, {7, 7 - 2.5}}) {
        const auto sample = quorbin::sample(field, {p}).at(0);
        EXPECT_NEAR(sample.value, p.x + 2 * p.y - 7.5, 1e-12);
    }
    EXPECT_NEAR(quorbin::sample(band, {{3.5, 2.0}}).at(0).value, 0, 1e-12);
    EXPECT_TRUE(std::isnan(quorbin::sample(band, {{7.0, 7.0}}).at(0).value));
    EXPECT_THROW(quorbin::sample(FullLevelSet2D(), {{0, 0}}), std::invalid_argument);
}

TEST(Sample, OfGridsOfFewerThanFourSamplesIsLinearAlongThem) {
    for (const int width : {1, 2, 3})
        for (const int height : {1, 2, 3}) {
            FullLevelSet2D field;
            fill(field, width, height, [](int x, int y) { return 2 * x - y + 0.5; });
            const Point p((width - 1) * 0.3, (height - 1) * 0.8);
            EXPECT_NEAR(quorbin::sample(field, {p}).at(0).value, 2 * p.x - p.y + 0.5, 1e-12);
        }
}

}  // namespace
