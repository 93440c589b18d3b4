#pragma once

#include <cstddef>

#include "common/march_queue.h"
#include "quorbin3d/distance/estimate.h"

namespace lset::detail {

/// The neighbours of a point on flat arrays: those in the grid whose state is side are known.
struct KnownNeighbours3D {
    bool known[6];
    double distance[6];

    KnownNeighbours3D(const double* distances, const signed char* states, int side, int x, int y, int z,
                      int width, int height, int depth) {
        const std::ptrdiff_t stride = width, layer = stride * height, i = z * layer + y * stride + x;
        const auto look = [&](Direction d, bool isThere, std::ptrdiff_t step) {
            known[d] = isThere && states[i + step] == side;
            distance[d] = known[d] ? distances[i + step] : 0.0;
        };
        look(kYPlus, y < height - 1, stride);
        look(kYMinus, y > 0, -stride);
        look(kXPlus, x < width - 1, 1);
        look(kXMinus, x > 0, -1);
        look(kZPlus, z < depth - 1, layer);
        look(kZMinus, z > 0, -layer);
    }
};

/// A dense grid under a march, on flat arrays of states and distances (see march). While a point is a trial point its distance
/// is in the queue, its entry among the distances holds its handle, and its state says from how many axes the distance is.
class DenseMarch3D {
 public:
    struct Point {
        int x, y, z;
        std::ptrdiff_t i;
    };
    /// The direction of the accepted point as seen from its neighbour, known when the code is compiled.
    template <Direction d>
    struct From {};

    DenseMarch3D(double* distances, signed char* states, int width, int height, int depth, double hx,
                 double hy, double hz)
        : distances_(distances),
          states_(states),
          width_(width),
          height_(height),
          depth_(depth),
          stride_(width),
          layer_(stride_ * height),
          quadratics_(hx, hy, hz) {}

    bool isFar(Point p) const { return states_[p.i] == kFar; }
    bool isTrial(Point p) const { return states_[p.i] >= kTrial; }
    int id(Point p) const { return static_cast<int>(p.i); }
    Point point(int id) const {
        const int row = id / width_;
        return {id % width_, row % height_, row / height_, id};
    }

    template <class Visit>
    void forEachNeighbour(Point p, const Visit& visit) const {
        if (p.x < width_ - 1) visit(Point{p.x + 1, p.y, p.z, p.i + 1}, From<kXMinus>());
        if (p.x > 0) visit(Point{p.x - 1, p.y, p.z, p.i - 1}, From<kXPlus>());
        if (p.y < height_ - 1) visit(Point{p.x, p.y + 1, p.z, p.i + stride_}, From<kYMinus>());
        if (p.y > 0) visit(Point{p.x, p.y - 1, p.z, p.i - stride_}, From<kYPlus>());
        if (p.z < depth_ - 1) visit(Point{p.x, p.y, p.z + 1, p.i + layer_}, From<kZMinus>());
        if (p.z > 0) visit(Point{p.x, p.y, p.z - 1, p.i - layer_}, From<kZPlus>());
    }

    double reach(Point q, State side) {
        const KnownNeighbours3D neighbours(distances_, states_, side, q.x, q.y, q.z, width_, height_, depth_);
        const Estimate3D estimate = estimateFrom(neighbours.known, neighbours.distance, quadratics_);
        setSource(q, estimate.source);
        return estimate.distance;
    }

    /// Each known neighbour has made all its neighbours trial points, so this one is the first.
    template <Direction d>
    double reachFrom(Point q, From<d>, State) {
        setSource(q, Source::kSingle);
        RunningMin nearest;
        nearest.offer(quadratics_.single(axisOf(d), distances_[q.i + step<d>()]));
        return nearest.best;
    }

    template <Direction d>
    double improve(Point q, From<d>, State side, double last) {
        if (!(last < kUsable)) return reach(q, side);
        constexpr int kAxis = axisOf(d);
        Source source = sourceOf(q);
        const double next =
            improved<kAxis>(last, source, distances_[q.i + step<d>()], look < kAxis == 0 ? 1 : 0 > (q, side),
                            look < kAxis == 2 ? 1 : 2 > (q, side), quadratics_);
        setSource(q, source);
        return next;
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
    void setSource(Point q, Source source) {
        states_[q.i] = static_cast<signed char>(kTrial + static_cast<int>(source));
    }
    Source sourceOf(Point q) const { return static_cast<Source>(states_[q.i] - kTrial); }

    template <int direction>
    std::ptrdiff_t step() const {
        const std::ptrdiff_t size = axisOf(direction) == 0 ? 1 : axisOf(direction) == 1 ? stride_ : layer_;
        return direction % 2 == 0 ? -size : size;
    }

    template <int axis>
    KnownAlongAxis look(Point q, State side) const {
        const int c = axis == 0 ? q.x : axis == 1 ? q.y : q.z;
        const int last = (axis == 0 ? width_ : axis == 1 ? height_ : depth_) - 1;
        const std::ptrdiff_t after = step<2 * axis + 1>();
        KnownAlongAxis known;
        if (c > 0 && states_[q.i - after] == side) known.add(distances_[q.i - after]);
        if (c < last && states_[q.i + after] == side) known.add(distances_[q.i + after]);
        return known;
    }

    double* distances_;
    signed char* states_;
    int width_, height_, depth_;
    std::ptrdiff_t stride_, layer_;
    EikonalQuadratics3D quadratics_;
};

}  // namespace lset::detail
