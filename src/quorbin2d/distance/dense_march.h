#pragma once

#include <cstddef>

#include "common/march_queue.h"
#include "common/states.h"
#include "quorbin2d/distance/estimate.h"

namespace lset::detail {

/// The neighbours of a point on flat arrays; known are those whose state is sign.
struct DenseNeighbours2D {
    const double* distances;
    const signed char* states;
    int sign, x, y, width, height;

    template <int dx, int dy>
    bool isKnown() const {
        const bool isThere = dx > 0 ? x < width - 1 : dx < 0 ? x >= 1 : dy > 0 ? y < height - 1 : y >= 1;
        return isThere && states[at<dx, dy>()] == sign;
    }
    template <int dx, int dy>
    double distance() const {
        return distances[at<dx, dy>()];
    }

 private:
    template <int dx, int dy>
    std::ptrdiff_t at() const {
        return static_cast<std::ptrdiff_t>(y + dy) * width + (x + dx);
    }
};

/// A dense grid under a march, on flat arrays of states and distances (see march). While a point is a trial
/// point its distance is in the queue, and its entry among the distances holds its handle.
class DenseMarch2D {
 public:
    struct Point {
        int x;
        std::ptrdiff_t i;
    };
    /// A direction, known when the code is compiled.
    template <int dx, int dy>
    struct From {};

    DenseMarch2D(double* distances, signed char* states, int width, int height, double hx, double hy)
        : distances_(distances),
          states_(states),
          stride_(width),
          lastRow_(static_cast<std::ptrdiff_t>(height - 1) * width),
          height_(height),
          hx_(hx),
          hy_(hy),
          quadratic_(hx, hy) {}

    bool isFar(Point p) const { return states_[p.i] == kFar; }
    bool isTrial(Point p) const { return states_[p.i] >= kTrial; }
    int id(Point p) const { return static_cast<int>(p.i); }
    Point point(int id) const { return {id % static_cast<int>(stride_), id}; }

    template <class Visit>
    void forEachNeighbour(Point p, const Visit& visit) const {
        if (p.x < stride_ - 1) visit(Point{p.x + 1, p.i + 1}, From<-1, 0>());
        if (p.x > 0) visit(Point{p.x - 1, p.i - 1}, From<1, 0>());
        if (p.i < lastRow_) visit(Point{p.x, p.i + stride_}, From<0, -1>());
        if (p.i >= stride_) visit(Point{p.x, p.i - stride_}, From<0, 1>());
    }

    double reach(Point q, State side) {
        const DenseNeighbours2D neighbours{
            distances_, states_, side, q.x, static_cast<int>(q.i / stride_), static_cast<int>(stride_),
            height_};
        const Estimate estimate = estimateFrom(neighbours, hx_, hy_, quadratic_);
        states_[q.i] = estimate.fromPair ? kTrialFromPair : static_cast<signed char>(kTrial);
        return estimate.distance;
    }

    /// Each known neighbour has made all its neighbours trial points, so this one is the first.
    template <int dx, int dy>
    double reachFrom(Point q, From<dx, dy> from, State) {
        states_[q.i] = kTrial;
        RunningMin nearest;
        nearest.offer(single(q, from));
        return nearest.best;
    }

    /// Only pairs that the new neighbour is part of can be new; the minimum over the others is the last
    /// distance.
    template <int dx, int dy>
    double improve(Point q, From<dx, dy> from, State side, double last) {
        const double* d = distances_ + q.i;
        const signed char* state = states_ + q.i;
        const double nextTo = d[dx + dy * stride_];
        RunningMin nearest;
        if constexpr (dx != 0) {
            if (q.i < lastRow_ && state[stride_] == side) nearest.offer(quadratic_(nextTo, d[stride_]));
            if (q.i >= stride_ && state[-stride_] == side) nearest.offer(quadratic_(nextTo, d[-stride_]));
        } else {
            if (q.x < stride_ - 1 && state[1] == side) nearest.offer(quadratic_(d[1], nextTo));
            if (q.x > 0 && state[-1] == side) nearest.offer(quadratic_(d[-1], nextTo));
        }
        if (*state == kTrial) {
            if (nearest.best < kNoDistance) {
                states_[q.i] = kTrialFromPair;
                return nearest.best;
            }
            nearest.offer(single(q, from));
        }
        return last > nearest.best ? nearest.best : last;
    }

    // A handle is an int, which a double holds exactly.
    void keepHandle(Point q, MarchQueue::Handle handle) { distances_[q.i] = handle; }
    MarchQueue::Handle handle(Point q) const { return static_cast<MarchQueue::Handle>(distances_[q.i]); }

    void accept(Point p, State side, double distance) {
        states_[p.i] = side;
        distances_[p.i] = distance;
    }
    static bool spreads(double) { return true; }

 private:
    static constexpr signed char kTrialFromPair = 3;

    template <int dx, int dy>
    double single(Point q, From<dx, dy>) const {
        return distances_[q.i + dx + dy * stride_] + (dx != 0 ? hx_ : hy_);
    }

    double* distances_;
    signed char* states_;
    std::ptrdiff_t stride_, lastRow_;
    int height_;
    double hx_, hy_;
    EikonalQuadratic2D quadratic_;
};

}  // namespace lset::detail
