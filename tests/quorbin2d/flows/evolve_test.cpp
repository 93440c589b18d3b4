#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/dense_support.h"

namespace {

using Vec2 = brin::Vec2<double>;
using Vec3 = brin::Vec3<double>;

constexpr double kPi = 3.14159265358979323846;

quorbin::Term2D::Function everywhere(double value) {
    return [=](double, const Vec2*, std::size_t count, double* values) { std::fill_n(values, count, value); };
}

FullLevelSet2D squareField() {
    FullLevelSet2D field;
    fill(field, 64, 64, [](int x, int y) {
        const double a = std::abs(x - 32.37) - 15.3, b = std::abs(y - 31.79) - 15.3;
        return std::hypot(std::max(a, 0.0), std::max(b, 0.0)) + std::min(std::max(a, b), 0.0);
    });
    return field;
}

// Corners open into arcs where the interface moves outward, and stay sharp where it moves inward.
TEST(Evolve, MovesAlongNormalsAsOffsetDoes) {
    const FullLevelSet2D square = squareField();
    for (const double distance : {5.3, -5.3}) {
        FullLevelSet2D moved;
        moved = square;
        quorbin::Equation2D equation;
        equation.normal = everywhere(distance);
        const auto result = quorbin::evolve(moved, equation, 1);
        EXPECT_EQ(result.time, 1);
        EXPECT_GT(result.steps, 5);
        double largest = 0, mean = 0;
        const auto outline = quorbin::contours(moved).at(0).outline;
        for (const Vec2& p : outline) {
            const double a = std::abs(p.x - 32.37) - 15.3, b = std::abs(p.y - 31.79) - 15.3;
            const double inward = std::max(a, b) - distance;  // of a square that is smaller by the distance
            const double error =
                distance < 0 ? inward : std::hypot(std::max(a, 0.0), std::max(b, 0.0)) - distance;
            largest = std::max(largest, std::abs(error));
            mean += std::abs(error) / static_cast<double>(outline.size());
        }
        EXPECT_LT(largest, 0.33) << distance;
        EXPECT_LT(mean, distance < 0 ? 0.012 : 0.07) << distance;
        const auto apart = quorbin::compare(moved, quorbin::offset(square, distance));
        EXPECT_LT(apart.meanDistance, 0.08) << distance;
    }
}

/// Mean distance, in spacings, of a blob that turns by a radian and grows by 0.05 from where it belongs.
double blobError(int n, int stepsBetweenDistances, bool grows) {
    const double h = 1.0 / (n - 1), a = 0.195, b = 0.15;
    FullLevelSet2D blob;
    fill(
        blob, n, n, [&](int x, int y) { return std::hypot((x * h - 0.5) / 1.3, y * h - 0.66) - b; }, h, h);
    quorbin::Equation2D equation;
    equation.velocity = [](double, const Vec2* points, std::size_t count, Vec2* velocities) {
        for (std::size_t i = 0; i < count; ++i) velocities[i] = {0.5 - points[i].y, points[i].x - 0.5};
    };
    if (grows) equation.normal = 0.05;
    quorbin::EvolveOptions options;
    options.stepsBetweenDistances = stepsBetweenDistances;
    quorbin::evolve(blob, equation, 1, options);
    quorbin::reinitialize(blob);
    std::vector<Vec2> truth;
    for (int k = 0; k < 2000; ++k) {
        const double t = 2 * kPi * k / 2000;
        const Vec2 normal = {b * std::cos(t), a * std::sin(t)};
        const Vec2 p = Vec2{a * std::cos(t), 0.16 + b * std::sin(t)} +
                       (grows ? 0.05 : 0.0) / std::sqrt(dot(normal, normal)) * normal;
        truth.push_back({0.5 + std::cos(1.0) * p.x - std::sin(1.0) * p.y,
                         0.5 + std::sin(1.0) * p.x + std::cos(1.0) * p.y});
    }
    double sum = 0;
    for (const auto& sample : quorbin::sample(blob, truth)) sum += std::abs(sample.value);
    return sum / 2000 / h;
}

TEST(Evolve, IsOfThirdOrderAndMoreWhereTheFieldIsSmooth) {
    // Errors in spacings, so that the order is one more than what they fall by.
    const auto order = [](int every, bool grows) {
        return 1 + std::log2(blobError(41, every, grows) / blobError(81, every, grows));
    };
    EXPECT_GT(order(0, false), 2.8);
    EXPECT_GT(order(0, true), 2.8);
    EXPECT_GT(order(4, false), 2.3);
    EXPECT_GT(order(4, true), 2.3);
    EXPECT_LT(blobError(81, 4, true), 1e-3);
}

TEST(Evolve, ABallGrowsAndBendsAtOnce) {
    FullLevelSet3D ball;
    ball.init(40, 40, 40, 1, 1, 1);
    for (int z = 0; z < 40; ++z)
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 40; ++x) ball(x, y, z) = std::hypot(x - 20.37, y - 19.79, z - 20.11) - 11;
    quorbin::Equation3D equation;
    equation.normal = 0.3;
    equation.curvature = std::vector<double>(64000, 1.0);
    double radius = 11;  // r' = 0.3 − 2/r
    for (int i = 0; i < 10000; ++i) radius += 1e-3 * (0.3 - 2 / (radius + 0.5e-3 * (0.3 - 2 / radius)));
    EXPECT_EQ(quorbin::evolve(ball, equation, 10).time, 10);
    EXPECT_NEAR(std::cbrt(quorbin::measure(ball).volume * 3 / (4 * kPi)) / radius, 1, 2e-3);
}

TEST(Evolve, TermsAreNumbersArraysOrFunctionsAlike) {
    const FullLevelSet2D start = squareField();
    const std::function<void(quorbin::Equation2D&, double, int)> set[] = {
        [](auto& e, double v, int) { e.normal = v; },
        [](auto& e, double v, int) { e.curvature = std::abs(v); },
        [](auto& e, double v, int) { e.source = v; }};
    const std::function<void(quorbin::Equation2D&, double)> setArray[] = {
        [](auto& e, double v) { e.normal = std::vector<double>(4096, v); },
        [](auto& e, double v) { e.curvature = std::vector<double>(4096, std::abs(v)); },
        [](auto& e, double v) { e.source = std::vector<double>(4096, v); }};
    const std::function<void(quorbin::Equation2D&, double)> setFunction[] = {
        [](auto& e, double v) { e.normal = everywhere(v); },
        [](auto& e, double v) { e.curvature = everywhere(std::abs(v)); },
        [](auto& e, double v) { e.source = everywhere(v); }};
    for (std::size_t term = 0; term < 3; ++term) {
        quorbin::Equation2D byNumber, byArray, byFunction;
        set[term](byNumber, -0.7, 0);
        setArray[term](byArray, -0.7);
        setFunction[term](byFunction, -0.7);
        FullLevelSet2D a, b, c;
        a = start, b = start, c = start;
        quorbin::evolve(a, byNumber, 2);
        quorbin::evolve(b, byArray, 2);
        quorbin::evolve(c, byFunction, 2);
        for (std::size_t i = 0; i < 4096; ++i) {
            ASSERT_EQ(a.data()[i], b.data()[i]) << term;
            ASSERT_EQ(a.data()[i], c.data()[i]) << term;
        }
        EXPECT_NE(a.data()[2080], start.data()[2080]);
    }
    // A source raises the field: of a distance, all of it by s t.
    FullLevelSet2D raised;
    raised = start;
    quorbin::Equation2D equation;
    equation.source = 0.5;
    quorbin::evolve(raised, equation, 2);
    EXPECT_NEAR(quorbin::measure(raised).area / (28.6 * 28.6), 1, 2e-3);
}

TEST(Evolve, ABorderMayBePeriodic) {
    // A stripe of a torus that goes once around it, and over its seam.
    FullLevelSet2D stripe, start;
    fill(start, 48, 4, [](int x, int) { return std::abs(x - 30.25) - 6; });
    stripe = start;
    quorbin::Equation2D equation;
    equation.velocity = [](double, const Vec2*, std::size_t count, Vec2* velocities) {
        std::fill_n(velocities, count, Vec2{1, 0});
    };
    quorbin::EvolveOptions options;
    options.border = quorbin::EvolveOptions::Border::kPeriodic;
    options.stepsBetweenDistances = 0;
    quorbin::evolve(stripe, equation, 48, options);
    for (int x = 0; x < 48; ++x) {
        if (std::abs(start.get(x, 1)) < 2) {
            EXPECT_NEAR(stripe.get(x, 1), start.get(x, 1), 0.03) << x;
        }
    }
}

TEST(Evolve, TurnsAwayWhatItCannotDoAndLeavesTheFieldAsItWas) {
    const FullLevelSet2D start = squareField();
    FullLevelSet2D field;
    field = start;
    quorbin::Equation2D equation;
    const auto refused = [&](double time, const quorbin::EvolveOptions& options = {}) {
        EXPECT_THROW(quorbin::evolve(field, equation, time, options), std::invalid_argument);
        for (std::size_t i = 0; i < 4096; ++i) ASSERT_EQ(field.data()[i], start.data()[i]);
    };
    equation.normal = 1;
    refused(-1);
    refused(NAN);
    quorbin::EvolveOptions options;
    options.courant = 1.5;
    refused(1, options);
    equation.normal = std::vector<double>(4095, 1.0);
    refused(1);
    equation.normal = std::vector<double>(4096, NAN);
    refused(1);
    equation.normal = 1;
    equation.curvature = -1;
    refused(1);
    equation.curvature = {};
    equation.source = [](double time, const Vec2*, std::size_t count, double* values) {
        std::fill_n(values, count, time < 3 ? 0.1 : NAN);
    };
    refused(6);
    equation.source = {};
    options = {};
    options.progress = [](int done, int) { return done < 500; };
    EXPECT_TRUE(quorbin::evolve(field, equation, 5, options).isEnded);
    for (std::size_t i = 0; i < 4096; ++i) ASSERT_EQ(field.data()[i], start.data()[i]);
    equation.normal = -3;
    const auto gone = quorbin::evolve(field, equation, 10);
    EXPECT_TRUE(gone.hasVanished);
    EXPECT_NEAR(gone.time, 15.3 / 3, 1);
}

TEST(Extended, ASpeedIsConstantAlongNormals) {
    FullLevelSet2D disc;
    fill(disc, 64, 64, [](int x, int y) { return std::hypot(x - 32.37, y - 31.79) - 20; });
    std::vector<double> speeds(4096, 1e9);
    for (std::size_t i = 0; i < 4096; ++i)
        if (std::abs(disc.data()[i]) < 2)
            speeds[i] = std::cos(
                3 * std::atan2(static_cast<double>(i / 64) - 31.79, static_cast<double>(i % 64) - 32.37));
    const std::vector<double> all = quorbin::extended(disc, speeds);
    for (std::size_t i = 0; i < 4096; ++i)
        if (disc.data()[i] > -15) {
            const double angle =
                std::atan2(static_cast<double>(i / 64) - 31.79, static_cast<double>(i % 64) - 32.37);
            EXPECT_NEAR(all[i], std::cos(3 * angle), 0.02) << i;
        }
    EXPECT_THROW((void)quorbin::extended(disc, std::vector<double>(7)), std::invalid_argument);
}

}  // namespace
