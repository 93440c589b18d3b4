#include <chrono>
#include <string>

#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

namespace {

using Vec2 = brin::Vec2<double>;
using Vec3 = brin::Vec3<double>;

/// A flow of a shape, given by its signed distance, over a grid of n points an axis. Its period ends where it
/// began.
template <class Vec>
struct Case {
    const char* name;
    int n;
    double spacing;
    double period;
    Shape shape;
    Vec (*velocity)(double time, const Vec& p, double period);
};

Vec2 turn(double, const Vec2& p, double) { return {kPi / 314 * (50 - p.y), kPi / 314 * (p.x - 50)}; }

Vec2 vortex(double time, const Vec2& p, double period) {
    const double sx = std::sin(kPi * p.x), sy = std::sin(kPi * p.y), c = std::cos(kPi * time / period);
    return {-sx * sx * std::sin(2 * kPi * p.y) * c, std::sin(2 * kPi * p.x) * sy * sy * c};
}

Vec3 deformation(double time, const Vec3& p, double period) {
    const double c = std::cos(kPi * time / period);
    const double sx = std::sin(kPi * p.x), sy = std::sin(kPi * p.y), sz = std::sin(kPi * p.z);
    const double x2 = 2 * sx * std::cos(kPi * p.x), y2 = 2 * sy * std::cos(kPi * p.y),
                 z2 = 2 * sz * std::cos(kPi * p.z);
    return {2 * sx * sx * y2 * z2 * c, -x2 * sy * sy * z2 * c, -x2 * y2 * sz * sz * c};
}

Point pointOf(const Vec2& p) { return {p.x, p.y, 0}; }
Point pointOf(const Vec3& p) { return {p.x, p.y, p.z}; }

void setUpUnit(FullLevelSet2D& grid, int n, double h) { grid.init(n, n, h, h); }
void setUpUnit(FullLevelSet3D& grid, int n, double h) { grid.init(n, n, n, h, h, h); }

/// Where a point was at the start, by small steps of the same order as the flow's.
template <class Vec>
Vec tracedBack(const Case<Vec>& flow, Vec p, double time) {
    constexpr int kSteps = 400;
    const auto v = [&](double at, const Vec& q) { return flow.velocity(at, q, flow.period); };
    const double dt = -time / kSteps;
    for (int i = 0; i < kSteps; ++i, time += dt) {
        const Vec a = v(time, p), b = v(time + dt / 2, p + dt / 2 * a), c = v(time + dt / 2, p + dt / 2 * b),
                  d = v(time + dt, p + dt * c);
        p += dt / 6 * (a + 2.0 * b + 2.0 * c + d);
    }
    return p;
}

template <class Grid, class Flow, class Vec>
void carry(const Case<Vec>& flow) {
    Grid start;
    setUpUnit(start, flow.n, flow.spacing);
    visitSamples(start, [&](double& value, const Point& p) { value = flow.shape(p); });
    const auto begin = std::chrono::steady_clock::now();
    Flow carried(start, [&](double time, const Vec* points, std::size_t count, Vec* velocities) {
        for (std::size_t i = 0; i < count; ++i) velocities[i] = flow.velocity(time, points[i], flow.period);
    });
    carried.advance(flow.period / 2);
    Grid half = carried.field();
    carried.advance(flow.period);
    const Grid end = carried.field();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;

    // By every seventh sample, since tracing them back takes longer than the flow.
    int atHalf = 0, atEnd = 0, inside = 0, looked = 0, i = 0;
    visitSamples(half, [&](double value, const Point& p) {
        const double before = start.data()[i], after = end.data()[i];
        ++i;
        inside += before < 0;
        atEnd += before != 0 && (before <= 0) != (after <= 0);
        if (i % 7 != 0) return;
        Vec at{};
        for (int axis = 0; axis < dimensions(start); ++axis) at[axis] = p[static_cast<std::size_t>(axis)];
        ++looked;
        atHalf += (flow.shape(pointOf(tracedBack(flow, at, flow.period / 2))) <= 0) != (value <= 0);
    });
    Line("carried")
        .add("dimensions", dimensions(start))
        .add("shape", flow.name + (" " + std::to_string(flow.n)))
        .add("method", "Flow")
        .add("change_percent", 100 * (enclosed(end) / enclosed(start) - 1))
        .add("wrong_samples", atEnd)
        .add("wrong_percent", 100.0 * atEnd / inside)
        .add("difference_percent", 100 * quorbin::compare(start, end).symmetricDifference / enclosed(start))
        .add("wrong_at_half_percent", 100.0 * atHalf / looked)
        .add("steps", carried.steps())
        .add("megabytes", static_cast<double>(carried.bytes()) / 1e6)
        .add("seconds", seconds.count());
}

/// Zalesak's disc.
double slottedDisc(const Point& p) {
    const double slotX = std::abs(p[0] - 50) - 2.5, slotY = p[1] - 85;
    const double slot =
        std::hypot(std::max(slotX, 0.0), std::max(slotY, 0.0)) + std::min(std::max(slotX, slotY), 0.0);
    return std::max(std::hypot(p[0] - 50, p[1] - 75) - 15, -slot);
}

}  // namespace

void carriedShapes(bool isSmall) {
    carry<FullLevelSet2D, quorbin::Flow2D, Vec2>({"slotted disc", 100, 1, 628, slottedDisc, turn});
    const int n = isSmall ? 64 : 128;
    carry<FullLevelSet2D, quorbin::Flow2D, Vec2>(
        {"vortex", n, 1.0 / (n - 1), 8, ballAt({0.5, 0.75, 0}, 0.15), vortex});
    for (const int side : isSmall ? std::vector{32} : std::vector{64, 100, 128})
        carry<FullLevelSet3D, quorbin::Flow3D, Vec3>(
            {"deformation", side, 1.0 / (side - 1), 3, ballAt({0.35, 0.35, 0.35}, 0.15), deformation});
}

}  // namespace accuracy
