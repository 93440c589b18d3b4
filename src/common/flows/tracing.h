#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <vector>

namespace lset::detail {

/// Points that a velocity carries, by Runge's and Kutta's fourth-order method.
template <class Point>
class Tracing {
 public:
    using Velocity = std::function<void(double, const Point*, std::size_t, Point*)>;

    explicit Tracing(Velocity velocity) : velocity_(std::move(velocity)) {}

    /// Velocities at points; throws std::invalid_argument if one is not finite.
    void velocities(double time, const Point* points, std::size_t count, Point* result) const {
        velocity_(time, points, count, result);
        bool isFinite = true;
        for (std::size_t i = 0; i < count; ++i) isFinite &= std::isfinite(dot(result[i], result[i]));
        if (!isFinite) throw std::invalid_argument("the velocity is not finite everywhere");
    }

    /// Moves points from one time to another, which may lie before it.
    void move(Point* points, std::size_t count, double from, double to, int substeps) const {
        constexpr std::size_t kBlock = 512;  // what is under way stays in cache
        const double dt = (to - from) / substeps;
        std::vector<Point> stage(kBlock), velocity(kBlock), sum(kBlock);
        for (std::size_t start = 0; start < count; start += kBlock) {
            const std::size_t n = std::min(kBlock, count - start);
            Point* const p = points + start;
            for (int step = 0; step < substeps; ++step) {
                const double time = from + step * dt;
                velocities(time, p, n, sum.data());
                const auto look = [&](const std::vector<Point>& rates, double part) {
                    for (std::size_t i = 0; i < n; ++i) stage[i] = p[i] + part * dt * rates[i];
                    velocities(time + part * dt, stage.data(), n, velocity.data());
                };
                const auto add = [&](double weight) {
                    for (std::size_t i = 0; i < n; ++i) sum[i] += weight * velocity[i];
                };
                look(sum, 0.5), add(2);
                look(velocity, 0.5), add(2);
                look(velocity, 1), add(1);
                for (std::size_t i = 0; i < n; ++i) p[i] += dt / 6 * sum[i];
            }
        }
    }

    /// The smallest power of two of substeps with which some of the points come within a tolerance of where
    /// half of the step would bring them.
    int substepsFor(const std::vector<Point>& points, double from, double to, double tolerance,
                    int first) const {
        constexpr std::size_t kSamples = 200;
        constexpr int kMost = 256;
        std::vector<Point> start;
        const std::size_t stride = points.size() / kSamples + 1;
        for (std::size_t i = 0; i < points.size(); i += stride) start.push_back(points[i]);
        int substeps = first;
        std::vector<Point> coarse = start;
        move(coarse.data(), coarse.size(), from, to, substeps);
        while (substeps < kMost) {
            std::vector<Point> fine = start;
            move(fine.data(), fine.size(), from, to, 2 * substeps);
            double largest = 0;
            for (std::size_t i = 0; i < fine.size(); ++i) {
                const Point difference = fine[i] - coarse[i];
                largest = std::max(largest, dot(difference, difference));
            }
            if (std::sqrt(largest) <= tolerance) break;
            coarse = std::move(fine);
            substeps *= 2;
        }
        return substeps;
    }

 private:
    Velocity velocity_;
};

}  // namespace lset::detail
