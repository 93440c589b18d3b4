#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin2d/dense_support.h"

namespace {

using Vec2 = brin::Vec2<double>;
using Vec3 = brin::Vec3<double>;

constexpr double kPi = 3.14159265358979323846;

/// A velocity from one at a point.
template <class AtPoint>
quorbin::Velocity2D velocityOf(AtPoint at) {
    return [=](double time, const Vec2* points, std::size_t count, Vec2* velocities) {
        for (std::size_t i = 0; i < count; ++i) velocities[i] = at(time, points[i]);
    };
}

const quorbin::Velocity2D kTurn = velocityOf([](double, const Vec2& p) {
    return Vec2{kPi / 314 * (50 - p.y), kPi / 314 * (p.x - 50)};
});

/// The disc with a slot (Zalesak 1979).
double slottedDisc(int x, int y) {
    const double slotX = std::abs(x - 50.0) - 2.5, slotY = y - 85.0;
    const double slot =
        std::hypot(std::max(slotX, 0.0), std::max(slotY, 0.0)) + std::min(std::max(slotX, slotY), 0.0);
    return std::max(std::hypot(x - 50.0, y - 75.0) - 15, -slot);
}

double areaOf(const FullLevelSet2D& field) {
    double sum = 0;
    for (const auto& region : quorbin::contours(field)) sum += quorbin::area(region);
    return sum;
}

TEST(Flow, ASlottedDiscIsTheSameAfterATurn) {
    FullLevelSet2D start;
    fill(start, 100, 100, slottedDisc);
    quorbin::Flow2D flow(start, kTurn);
    EXPECT_TRUE(flow.advance(628));
    EXPECT_EQ(flow.time(), 628);
    EXPECT_LT(flow.steps(), 40U);
    const FullLevelSet2D end = flow.field();
    EXPECT_NEAR(areaOf(end) / areaOf(start), 1, 2e-4);
    int wrong = 0;
    for (std::size_t i = 0; i < 10000; ++i)
        wrong += start.data()[i] != 0 && (start.data()[i] <= 0) != (end.data()[i] <= 0);
    EXPECT_LE(wrong, 2);
}

/// The vortex (LeVeque 1996), which draws a disc out to a thread that it winds up, and unwinds it again.
struct Vortex {
    static constexpr int kSide = 96;
    static constexpr double kPeriod = 6, kSpacing = 1.0 / (kSide - 1);

    static Vec2 at(double time, const Vec2& p) {
        const double sx = std::sin(kPi * p.x), sy = std::sin(kPi * p.y), c = std::cos(kPi * time / kPeriod);
        return {-sx * sx * std::sin(2 * kPi * p.y) * c, std::sin(2 * kPi * p.x) * sy * sy * c};
    }
    static double disc(const Vec2& p) { return std::hypot(p.x - 0.5, p.y - 0.75) - 0.15; }
    static FullLevelSet2D start() {
        FullLevelSet2D field;
        fill(
            field, kSide, kSide,
            [](int x, int y) {
                return disc({x * kSpacing, y * kSpacing});
            },
            kSpacing, kSpacing);
        return field;
    }
    /// Where a point was at the start.
    static Vec2 tracedBack(Vec2 p, double time) {
        constexpr int kSteps = 600;
        const double dt = -time / kSteps;
        for (int i = 0; i < kSteps; ++i, time += dt) {
            const Vec2 a = at(time, p), b = at(time + dt / 2, p + dt / 2 * a),
                       c = at(time + dt / 2, p + dt / 2 * b), d = at(time + dt, p + dt * c);
            p += dt / 6 * (a + 2.0 * b + 2.0 * c + d);
        }
        return p;
    }
};

TEST(Flow, AVortexIsTrueHalfWayAndUndoneAtItsEnd) {
    const FullLevelSet2D start = Vortex::start();
    quorbin::Flow2D flow(start, velocityOf(Vortex::at));
    flow.advance(Vortex::kPeriod / 2);
    const FullLevelSet2D half = flow.field();
    int wrong = 0;
    for (int y = 0; y < Vortex::kSide; ++y)
        for (int x = 0; x < Vortex::kSide; ++x) {
            const Vec2 from =
                Vortex::tracedBack({x * Vortex::kSpacing, y * Vortex::kSpacing}, Vortex::kPeriod / 2);
            wrong += (Vortex::disc(from) <= 0) != (half.get(x, y) <= 0);
        }
    EXPECT_LE(wrong, 3);
    flow.advance(Vortex::kPeriod);
    const FullLevelSet2D end = flow.field();
    EXPECT_NEAR(areaOf(end) / areaOf(start), 1, 5e-4);
    EXPECT_LT(quorbin::compare(start, end).symmetricDifference / areaOf(start), 2e-3);
}

// A finer field shows what the grid of the start cannot: threads thinner than a cell.
TEST(Flow, KeepsWhatIsThinnerThanACell) {
    const FullLevelSet2D start = Vortex::start();
    quorbin::Flow2D flow(start, velocityOf(Vortex::at));
    flow.advance(Vortex::kPeriod / 2);
    const double whole = areaOf(start);
    EXPECT_NEAR(areaOf(flow.field(4)) / whole, 1, 0.01);
    const FullLevelSet2D fine = flow.field(2);
    EXPECT_EQ(fine.getWidth(), 2 * Vortex::kSide - 1);
    EXPECT_DOUBLE_EQ(fine.getXSpace(), Vortex::kSpacing / 2);
    // Values at points are those of the start, where these points came from.
    const std::vector<Vec2> points = {{0.5, 0.2}, {0.31, 0.62}, {0.72, 0.41}};
    const std::vector<double> values = flow.values(points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double truth = Vortex::disc(Vortex::tracedBack(points[i], Vortex::kPeriod / 2));
        EXPECT_EQ(values[i] <= 0, truth <= 0) << i;
    }
}

TEST(Flow, GoesByTheSpacingsAndOverTheBorder) {
    // A disc that moves by (30, −10) over spacings of 1 and 2.
    FullLevelSet2D start;
    fill(
        start, 80, 40, [](int x, int y) { return std::hypot(x - 20.3, 2 * y - 50.2) - 12; }, 1, 2);
    const auto wind = velocityOf([](double time, const Vec2&) { return Vec2{30, -20 * time}; });
    const FullLevelSet2D moved = quorbin::advect(start, wind, 1);
    const auto figures = quorbin::measure(moved);
    EXPECT_NEAR(figures.centroid.x, 50.3, 0.01);
    EXPECT_NEAR(figures.centroid.y, 40.2, 0.01);
    EXPECT_NEAR(figures.area / quorbin::measure(start).area, 1, 2e-3);

    // Half-plane x ≤ 20: what flows in is outside, or more of the same.
    for (const auto border :
         {quorbin::FlowOptions::Border::kOutside, quorbin::FlowOptions::Border::kContinued}) {
        fill(start, 64, 32, [](int x, int) { return x - 20.0; });
        quorbin::FlowOptions options;
        options.border = border;
        const auto right = velocityOf([](double, const Vec2&) { return Vec2{1, 0}; });
        const FullLevelSet2D end = quorbin::advect(start, right, 25.25, options);
        const bool isOutside = border == quorbin::FlowOptions::Border::kOutside;
        EXPECT_EQ(end.get(10, 16) > 0, isOutside);
        EXPECT_LE(end.get(40, 16), 0);
        EXPECT_NEAR(end.get(50, 16), 50 - 45.25, 1e-6);
        // All of it gone, or come.
        const FullLevelSet2D gone = quorbin::advect(start, right, 500, options);
        for (std::size_t i = 0; i < 64 * 32; ++i) EXPECT_EQ(gone.data()[i] > 0, isOutside);
    }
}

TEST(Flow, AVelocityOnAGridIsInterpolatedAndHeldBeyond) {
    std::vector<Vec2> samples(12);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) samples[static_cast<std::size_t>(4 * y + x)] = {1.0 * x, 10.0 * y + x};
    const auto velocity = quorbin::velocityOnGrid(samples, 4, 3, 2, 0.5);
    const Vec2 points[] = {{3, 0.25}, {-5, 9}, {6, 1}};
    Vec2 found[3];
    velocity(0, points, 3, found);
    EXPECT_EQ(found[0], (Vec2{1.5, 6.5}));
    EXPECT_EQ(found[1], (Vec2{0, 20}));
    EXPECT_EQ(found[2], (Vec2{3, 23}));
    EXPECT_THROW((void)quorbin::velocityOnGrid(samples, 4, 4, 1, 1), std::invalid_argument);
    samples[5].x = NAN;
    EXPECT_THROW((void)quorbin::velocityOnGrid(samples, 4, 3, 1, 1), std::invalid_argument);
}

TEST(Flow, TurnsAwayWhatItCannotDoAndStaysAsItWas) {
    FullLevelSet2D start;
    fill(start, 100, 100, slottedDisc);
    quorbin::Flow2D flow(start, velocityOf([](double time, const Vec2&) {
                             return Vec2{time < 5 ? 1 : NAN, 0};
                         }));
    EXPECT_TRUE(flow.advance(3));
    const FullLevelSet2D before = flow.field();
    for (const double time : {2.0, double(NAN), std::numeric_limits<double>::infinity(), 9.0})
        EXPECT_THROW(flow.advance(time), std::invalid_argument) << time;
    EXPECT_EQ(flow.time(), 3);
    const FullLevelSet2D after = flow.field();
    for (std::size_t i = 0; i < 10000; ++i) ASSERT_EQ(before.data()[i], after.data()[i]);

    quorbin::FlowOptions options;
    options.progress = [](int done, int) { return done < 300; };
    quorbin::Flow2D watched(start, kTurn, 0, options);
    EXPECT_FALSE(watched.advance(628));
    EXPECT_EQ(watched.time(), 0);
    EXPECT_EQ(watched.steps(), 0U);

    FullLevelSet2D other;
    fill(other, 3, 100, [](int x, int) { return x - 1.5; });
    EXPECT_THROW(quorbin::Flow2D(other, kTurn), std::invalid_argument);
    fill(other, 8, 8, [](int, int) { return 1; });
    EXPECT_THROW(quorbin::Flow2D(other, kTurn), quorbin::NoInterface);
    fill(other, 8, 8, [](int x, int) { return x - 3.5; });
    EXPECT_THROW(quorbin::Flow2D(other, kTurn, NAN), std::invalid_argument);
}

/// The deformation of a sphere (Enright et al. 2002) to a sheet thinner than a cell and back.
TEST(Flow, ADeformedSphereComesBack) {
    constexpr int kSide = 40;
    const double h = 1.0 / (kSide - 1);
    FullLevelSet3D start;
    start.init(kSide, kSide, kSide, h, h, h);
    for (int z = 0; z < kSide; ++z)
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x)
                start(x, y, z) = std::hypot(x * h - 0.35, y * h - 0.35, z * h - 0.35) - 0.15;
    const quorbin::Velocity3D deformation = [](double time, const Vec3* points, std::size_t count,
                                               Vec3* velocities) {
        const double c = std::cos(kPi * time / 3);
        const auto squared = [](double a) { return a * a; };
        for (std::size_t i = 0; i < count; ++i) {
            const auto [x, y, z] = points[i];
            const double x2 = std::sin(2 * kPi * x), y2 = std::sin(2 * kPi * y), z2 = std::sin(2 * kPi * z);
            velocities[i] = {2 * squared(std::sin(kPi * x)) * y2 * z2 * c,
                             -x2 * squared(std::sin(kPi * y)) * z2 * c,
                             -x2 * y2 * squared(std::sin(kPi * z)) * c};
        }
    };
    const FullLevelSet3D end = quorbin::advect(start, deformation, 3);
    const double before = quorbin::measure(start).volume;
    EXPECT_NEAR(quorbin::measure(end).volume / before, 1, 1e-3);
    EXPECT_LT(quorbin::compare(start, end).symmetricDifference / before, 4e-3);
}

}  // namespace
