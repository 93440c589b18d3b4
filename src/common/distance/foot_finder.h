#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "common/distance/foot_distance.h"
#include "common/distance/local_interpolant.h"
#include "common/distance/newton_step.h"
#include "common/stepped.h"
#include "common/vector.h"

namespace lset::detail {

/// The part of the way from a sample to a neighbour on the other side at which the field is zero, as the
/// contour has it: beside a sample that is not finite the crossing is at the one that is.
inline double crossedAfter(double here, double beside) {
    if (std::isfinite(here) && std::isfinite(beside)) {
        const double difference = beside - here;
        return std::abs(difference) < 1e-300 ? 0.5 : -here / difference;
    }
    return std::isfinite(here) ? 0.0 : std::isfinite(beside) ? 1.0 : 0.5;
}

/// Where the interface crosses the axes through a grid point between it and its neighbours.
template <std::size_t dimensions>
struct AxisCrossings {
    static constexpr double kNone = std::numeric_limits<double>::infinity();

    std::array<bool, dimensions> before{}, after{};  // whether there is a neighbour
    Vector<dimensions> distance;                     // to the nearer crossing on each axis, in world units
    std::array<int, dimensions> sign{};              // on which side it lies; 0 where there is none
    Vector<dimensions> slope{};                      // the larger of the one-sided differences on each axis
    Vector<dimensions> gradient{};  // twice the central difference, if there are neighbours on both sides

    AxisCrossings() { distance.fill(kNone); }

    /// Takes in a neighbour, a step (1 or −1) and so much in world units away along an axis.
    void look(double here, double beside, std::size_t axis, int step, double spacing) {
        (step < 0 ? before : after)[axis] = true;
        const double difference = (beside - here) / spacing;
        slope[axis] = std::max(slope[axis], std::abs(difference));  // but for not-a-number
        gradient[axis] += step * difference;
        if ((here <= 0) == (beside <= 0)) return;
        const double crossing = spacing * crossedAfter(here, beside);
        if (!(crossing < distance[axis])) return;
        distance[axis] = crossing;
        sign[axis] = step;
    }

    double nearest() const { return *std::min_element(distance.begin(), distance.end()); }
};

/// Finds the foot of a grid point beside the interface. Where the samples around are those of a smooth field,
/// it is the closest point of the zero level of their interpolant (Chopp 2001), found by Newton's method.
/// Elsewhere – at corners and edges, in thin parts, beside samples that are not finite, on grids of less than
/// four samples – the distance is the value itself, if it is at most that of the nearest crossing on the axes
/// and at least that of the plane with the steepest slopes around. Lattice tells of the samples:
///
///     value(site)
///     block(first, samples)    the samples of a block, see LocalInterpolant; first, the coordinates of its
///                              first sample, may be moved into the grid. False where a sample is missing.
template <class Lattice>
class FootFinder {
 public:
    static constexpr std::size_t dimensions = Lattice::dimensions;
    using Point = std::array<int, dimensions>;

    FootFinder(const Lattice& lattice, const Vector<dimensions>& h)
        : lattice_(lattice), h_(h), largest_(*std::max_element(h.begin(), h.end())) {
        for (std::size_t axis = 0; axis < dimensions; ++axis) perSpacing_[axis] = 1 / h[axis];
    }

    /// For the grid point with these coordinates and this value, where there is a crossing; returns the
    /// distance.
    double find(const Point& p, double value, const AxisCrossings<dimensions>& crossings,
                Foot<dimensions>& foot) {
        foot.isEnd = false;
        double distance;
        if (!std::isfinite(value) || !project(p, value, crossings, foot, distance))
            distance = estimate(p, value, crossings, foot);
        return distance;
    }

 private:
    static constexpr double kSmooth = 0.95;  // least length of the mean of the unit gradients around

    /// Direction and distance of the plane through the crossings.
    static double plane(const AxisCrossings<dimensions>& crossings, Vector<dimensions>& towards) {
        double squared = 0;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            towards[axis] = crossings.sign[axis] / crossings.distance[axis];
            squared += towards[axis] * towards[axis];
        }
        const double distance = 1 / std::sqrt(squared);
        towards = scaled(towards, distance);
        return distance;
    }

    double estimate(const Point& p, double value, const AxisCrossings<dimensions>& crossings,
                    Foot<dimensions>& foot) const {
        const double nearest = crossings.nearest();
        Vector<dimensions> towards{};
        if (nearest > 0) {
            plane(crossings, towards);
        } else {
            const auto axis = static_cast<std::size_t>(
                std::min_element(crossings.distance.begin(), crossings.distance.end()) -
                crossings.distance.begin());
            towards[axis] = crossings.sign[axis];
        }
        const double least = std::abs(value) / lengthOf(crossings.slope);
        const double distance =
            std::isfinite(least) ? std::min(nearest, std::max(least, std::abs(value))) : nearest;
        foot.at = sum(worldOf(p, h_), distance, towards);
        foot.normal = scaled(towards, value <= 0 ? 1.0 : -1.0);
        foot.directions = tangentsTo(foot.normal);
        foot.curvatures.fill(0);
        foot.reach = largest_;
        foot.isSmooth = false;
        return distance;
    }

    /// About where the foot is, from the point: on the plane of its gradient, if that crosses the axes where
    /// the field does.
    Vector<dimensions> guess(double value, const AxisCrossings<dimensions>& crossings) const {
        const double nearest = crossings.nearest();
        const double squared = dot(crossings.gradient, crossings.gradient);
        const double part = -2 * value / squared;
        Vector<dimensions> towards{};
        if (part * part * squared <= nearest * nearest) return scaled(crossings.gradient, part);
        if (!(nearest > 0)) return towards;
        const double distance = plane(crossings, towards);
        return scaled(towards, distance);
    }

    bool project(const Point& p, double value, const AxisCrossings<dimensions>& crossings,
                 Foot<dimensions>& foot, double& distance) {
        Vector<dimensions> x = guess(value, crossings);  // from p
        Point cell;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const bool isBefore = x[axis] < 0 ? crossings.before[axis] : !crossings.after[axis];
            cell[axis] = isBefore ? stepped(p[axis], -1) : p[axis];
        }
        constexpr int kCells = 3;
        for (int tried = 0; tried < kCells; ++tried) {
            Point first = cell;
            for (int& c : first) c = stepped(c, -1);
            if (!lattice_.block(first, interpolant_.samples) || !isSmooth()) return false;
            if (!iterate(p, first, x, foot)) return false;
            if (!leave(p, cell, x)) break;
        }
        const double toCrossing = crossings.nearest();
        distance = lengthOf(x);
        if (!(distance <= toCrossing + 0.5 * largest_)) return false;
        // The point must be on its own side of the interface there.
        const double side = -dot(x, foot.normal);
        return value <= 0 ? side <= kRounding * largest_ : side >= -kRounding * largest_;
    }

    /// Moves on to the cell where x lies, unless it is the same or x is only just beyond it.
    bool leave(const Point& p, Point& cell, const Vector<dimensions>& x) const {
        constexpr double kBeyond = 0.1;
        bool left = false;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const double inCell = x[axis] * perSpacing_[axis] + (p[axis] - cell[axis]);
            const int move = inCell < -kBeyond ? -1 : inCell > 1 + kBeyond ? 1 : 0;
            cell[axis] += move;
            left |= move != 0;
        }
        return left;
    }

    /// Whether the gradients in the corners of the block point nearly the same way.
    bool isSmooth() const {
        constexpr std::array<std::size_t, 3> stride = {1, 4, 16};
        constexpr unsigned kCorners = 1U << dimensions;
        std::array<Vector<dimensions>, kCorners> gradients;
        Vector<dimensions> sumOf{};
        double squares = 0;
        for (unsigned corner = 0; corner < kCorners; ++corner) {
            std::size_t i = 0;
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                i += 3 * stride[axis] * (corner >> axis & 1);
            for (std::size_t axis = 0; axis < dimensions; ++axis) {
                const bool isLast = (corner >> axis & 1) != 0;
                const double* const from = &interpolant_.samples[isLast ? i - stride[axis] : i];
                gradients[corner][axis] = (from[stride[axis]] - from[0]) * perSpacing_[axis];
            }
            squares += dot(gradients[corner], gradients[corner]);
            sumOf = sum(sumOf, 1, gradients[corner]);
        }
        constexpr double kLeast = kSmooth * kCorners;
        // If they are alike in length too, their lengths need not be formed.
        if (dot(sumOf, sumOf) > kLeast * kSmooth * squares) return true;
        Vector<dimensions> mean{};
        for (const auto& gradient : gradients) mean = sum(mean, 1 / lengthOf(gradient), gradient);
        return dot(mean, mean) >= kLeast * kLeast;  // which not-a-number is not
    }

    /// Newton's method in a block for the point x, from p, of the zero level of the interpolant where p lies
    /// on the normal: x = −λ∇P and P = 0. The second derivatives are those of the first step.
    bool iterate(const Point& p, const Point& block, Vector<dimensions>& x, Foot<dimensions>& foot) const {
        constexpr int kSteps = 8;
        Vector<dimensions> offset;  // of p in the block, in grid units
        for (std::size_t axis = 0; axis < dimensions; ++axis) offset[axis] = p[axis] - block[axis];
        const auto first = interpolant_.template at<true>(placeOf(x, offset));
        double value = first.value;
        Vector<dimensions> gradient = gradientOf(first);
        Symmetric<dimensions> bending;
        for (std::size_t i = 0; i < dimensions; ++i)
            for (std::size_t j = 0; j < dimensions; ++j)
                bending[i][j] = first.hessian[i][j] * (perSpacing_[i] * perSpacing_[j]);
        double lambda = -dot(x, gradient) / dot(gradient, gradient);
        for (int step = 1;; ++step) {
            const Vector<dimensions> moved = newtonStep(x, value, gradient, bending, lambda);
            x = sum(x, 1, moved);
            const double size = dot(moved, moved);
            if (!(size < 4 * largest_ * largest_)) return false;
            if (size <= kConverged * kConverged * largest_ * largest_) break;
            if (step == kSteps) return false;
            const auto next = interpolant_.template at<false>(placeOf(x, offset));
            value = next.value;
            gradient = gradientOf(next);
        }
        const double slope = lengthOf(gradient);
        foot.at = sum(worldOf(p, h_), 1, x);
        foot.normal = scaled(gradient, 1 / slope);
        for (auto& row : bending) row = scaled(row, 1 / slope);
        setCurvatures(foot, bending);
        foot.reach = 2 * largest_;
        foot.isSmooth = true;
        return true;
    }

    Vector<dimensions> placeOf(const Vector<dimensions>& x, const Vector<dimensions>& offset) const {
        Vector<dimensions> place;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            place[axis] = x[axis] * perSpacing_[axis] + offset[axis];
        return place;
    }
    Vector<dimensions> gradientOf(const typename LocalInterpolant<dimensions>::Values& found) const {
        Vector<dimensions> gradient;
        for (std::size_t i = 0; i < dimensions; ++i) gradient[i] = found.gradient[i] * perSpacing_[i];
        return gradient;
    }

    static constexpr double kConverged = 1e-5;  // the error is far smaller than such a step
    static constexpr double kRounding = 1e-9;

    const Lattice& lattice_;
    Vector<dimensions> h_, perSpacing_;
    double largest_;
    LocalInterpolant<dimensions> interpolant_;
};

}  // namespace lset::detail
