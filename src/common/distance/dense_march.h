#pragma once

#include <array>
#include <cstddef>

#include "common/distance/march.h"

namespace lset::detail {

/// A dense grid under a march (see march), on flat arrays of states and distances. While a point is a trial
/// point its distance is in the queue, and its entry among the distances holds its handle. Estimator, made
/// from the spacings, makes tentative distances of a point q, or of one whose neighbour a step (1 or −1)
/// along an axis has just become known:
///
///     reach(march, q, side)
///     reachFrom<axis, step>(march, q, side)
///     improve<axis, step>(march, q, side, last)
template <std::size_t dimensions, class Estimator>
class DenseMarch {
 public:
    /// Its index, and its coordinates along all axes but the last, where the index alone tells what is beyond
    /// the edge.
    struct Point {
        std::array<int, dimensions - 1> at;
        std::ptrdiff_t i;
    };

    DenseMarch(double* distances, signed char* states, const std::array<int, dimensions>& sizes,
               const std::array<double, dimensions>& h)
        : distances_(distances), states_(states), sizes_(sizes), estimator_(h) {
        std::ptrdiff_t stride = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            strides_[axis] = stride;
            last_[axis] = sizes[axis] - 1;
            stride *= sizes[axis];
        }
        lastLayer_ = stride - strides_[kLastAxis];
    }

    bool isFar(const Point& p) const { return states_[p.i] == kFar; }
    bool isTrial(const Point& p) const { return states_[p.i] >= kTrial; }
    int id(const Point& p) const { return static_cast<int>(p.i); }
    Point point(int id) const {
        Point p;
        p.i = id;
        for (std::size_t axis = 0; axis < kLastAxis; ++axis) {
            p.at[axis] = id % sizes_[axis];
            id /= sizes_[axis];
        }
        return p;
    }

    template <std::size_t axis = 0, class Visit>
    void forEachNeighbour(const Point& p, const Visit& visit) const {
        if (isThere<axis, 1>(p)) visit(beside<axis, 1>(p), From<axis, -1>());
        if (isThere<axis, -1>(p)) visit(beside<axis, -1>(p), From<axis, 1>());
        if constexpr (axis + 1 < dimensions) forEachNeighbour<axis + 1>(p, visit);
    }

    double reach(const Point& q, State side) {
        states_[q.i] = kTrial;
        return estimator_.reach(*this, q, side);
    }
    template <int axis, int step>
    double reachFrom(const Point& q, From<axis, step>, State side) {
        states_[q.i] = kTrial;
        return estimator_.template reachFrom<axis, step>(*this, q, side);
    }
    template <int axis, int step>
    double improve(const Point& q, From<axis, step>, State side, double last) {
        return estimator_.template improve<axis, step>(*this, q, side, last);
    }

    // A handle is an int, which a double holds exactly.
    void keepHandle(const Point& q, MarchQueue::Handle handle) { distances_[q.i] = handle; }
    MarchQueue::Handle handle(const Point& q) const {
        return static_cast<MarchQueue::Handle>(distances_[q.i]);
    }

    void accept(const Point& p, State side, double distance) {
        states_[p.i] = side;
        distances_[p.i] = distance;
    }
    static bool spreads(double) { return true; }

    /// Every point that has become known has made all its neighbours trial points.
    static constexpr bool haveAllSpread() { return true; }

    /// A number that the estimator keeps for a trial point, from 0.
    void keep(const Point& trial, int number) {
        states_[trial.i] = static_cast<signed char>(kTrial + number);
    }
    int kept(const Point& trial) const { return states_[trial.i] - kTrial; }

    /// The distance of the neighbour one step (1 or −1) along an axis, which must be known.
    template <int axis, int step>
    double distanceBeside(const Point& p) const {
        return distances_[p.i + offset<axis, step>()];
    }
    /// The same where it may not be known on a side: then null.
    template <int axis, int step>
    const double* known(const Point& p, int side) const {
        const std::ptrdiff_t i = p.i + offset<axis, step>();
        return isThere<axis, step>(p) && states_[i] == side ? distances_ + i : nullptr;
    }

 private:
    static constexpr std::size_t kLastAxis = dimensions - 1;

    template <std::size_t axis, int step>
    bool isThere(const Point& p) const {
        if constexpr (axis == kLastAxis)
            return step > 0 ? p.i < lastLayer_ : p.i >= strides_[axis];
        else
            return step > 0 ? p.at[axis] < last_[axis] : p.at[axis] > 0;
    }
    template <std::size_t axis, int step>
    std::ptrdiff_t offset() const {
        return axis == 0 ? step : step * strides_[axis];
    }
    template <std::size_t axis, int step>
    Point beside(Point p) const {
        if constexpr (axis < kLastAxis) p.at[axis] += step;
        p.i += offset<axis, step>();
        return p;
    }

    double* distances_;
    signed char* states_;
    std::array<int, dimensions> sizes_, last_;  // points along each axis, and the coordinate of the last
    std::array<std::ptrdiff_t, dimensions> strides_;
    std::ptrdiff_t lastLayer_;  // index where the last layer, or row, begins
    Estimator estimator_;
};

}  // namespace lset::detail
