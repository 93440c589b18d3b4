#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>

#include "common/states.h"
#include "quorbin3d/distance/eikonal_quadratic.h"

namespace lset::detail {

/// The directions of the six neighbours, those of an axis side by side.
enum Direction : int { kXMinus, kXPlus, kYMinus, kYPlus, kZMinus, kZPlus };
constexpr int axisOf(int direction) { return direction / 2; }

/// Corners of neighbours on three different axes, and pairs on two, in the order in which they are looked at.
constexpr Direction kTriples[8][3] = {{kXPlus, kYPlus, kZPlus},    {kXMinus, kYPlus, kZPlus},
                                      {kXMinus, kYMinus, kZPlus},  {kXPlus, kYMinus, kZPlus},
                                      {kXPlus, kYPlus, kZMinus},   {kXMinus, kYPlus, kZMinus},
                                      {kXMinus, kYMinus, kZMinus}, {kXPlus, kYMinus, kZMinus}};
constexpr Direction kPairs[12][2] = {{kXMinus, kYPlus}, {kXPlus, kYPlus},   {kZPlus, kYPlus},
                                     {kZMinus, kYPlus}, {kXMinus, kYMinus}, {kXPlus, kYMinus},
                                     {kZPlus, kYMinus}, {kZMinus, kYMinus}, {kZPlus, kXPlus},
                                     {kZPlus, kXMinus}, {kZMinus, kXPlus},  {kZMinus, kXMinus}};
constexpr Direction kSingles[6] = {kXPlus, kYPlus, kYMinus, kXMinus, kZPlus, kZMinus};

/// A candidate from here on is no distance.
constexpr double kUsable = 1e10;

/// From how many axes a tentative distance is.
enum class Source3D { kSingle, kPair, kTriple };
struct Estimate3D {
    double distance;
    Source3D source;
};

/// The known neighbours along one axis.
struct KnownAlongAxis {
    int count = 0;
    double distance[2];

    /// Adds a distance unless it is null.
    void add(const double* d) {
        if (d != nullptr) distance[count++] = *d;
    }
    const double* begin() const { return distance; }
    const double* end() const { return distance + count; }
};

/// The neighbours of a point by direction: each null unless it is known, else its distance.
using KnownNeighbours3D = std::array<const double*, 6>;

/// Tentative distance of a point from those of its neighbours that are known. Candidates from three axes rule
/// out those from two, and these the single ones, however near.
inline Estimate3D estimateFrom(const KnownNeighbours3D& known, const EikonalQuadratics3D& quadratics) {
    KnownAlongAxis along[3];
    for (int direction = 0; direction < 6; ++direction)
        along[axisOf(direction)].add(known[static_cast<std::size_t>(direction)]);
    RunningMin nearest;
    for (const double x : along[0])
        for (const double y : along[1])
            for (const double z : along[2]) nearest.offer(quadratics.triple(x, y, z));
    if (nearest.best < kUsable) return {nearest.best, Source3D::kTriple};
    for (const int lower : {0, 1})
        for (int higher = lower + 1; higher < 3; ++higher)
            for (const double a : along[lower])
                for (const double b : along[higher]) nearest.offer(quadratics.pair(lower, higher, a, b));
    if (nearest.best < kUsable) return {nearest.best, Source3D::kPair};
    for (const int axis : {0, 1, 2})
        for (const double a : along[axis]) nearest.offer(quadratics.single(axis, a));
    return {nearest.best, Source3D::kSingle};
}

/// The next tentative distance of a point once a neighbour along an axis, at the distance here, has become
/// known. Only candidates that it is part of can be new; the minimum over the others is the last distance,
/// unless that comes from fewer axes than are known now. The last distance must be usable; its source becomes
/// that of the next.
template <int axis>
double improved(double last, Source3D& source, double here, const KnownAlongAxis& lower,
                const KnownAlongAxis& higher, const EikonalQuadratics3D& quadratics) {
    const auto pair = [&](int other, double there) {
        return axis < other ? quadratics.pair(axis, other, here, there)
                            : quadratics.pair(other, axis, there, here);
    };
    RunningMin nearest;
    for (const double h : higher)
        for (const double l : lower)
            nearest.offer(axis == 0   ? quadratics.triple(here, l, h)
                          : axis == 1 ? quadratics.triple(l, here, h)
                                      : quadratics.triple(l, h, here));
    if (source == Source3D::kTriple) return last > nearest.best ? nearest.best : last;
    if (nearest.best < kUsable) {
        source = Source3D::kTriple;
        return nearest.best;
    }
    nearest = RunningMin();
    for (const double l : lower) nearest.offer(pair(axis == 0 ? 1 : 0, l));
    for (const double h : higher) nearest.offer(pair(axis == 2 ? 1 : 2, h));
    if (source == Source3D::kPair) return last > nearest.best ? nearest.best : last;
    if (nearest.best < kUsable) {
        source = Source3D::kPair;
        return nearest.best;
    }
    const double single = quadratics.single(axis, here);
    return last > single ? single : last;
}

/// The neighbours of a point under a march that are known on a side.
template <class March, class Point>
KnownNeighbours3D knownNeighbours(const March& march, const Point& p, int side) {
    KnownNeighbours3D known;
    known[kXMinus] = march.template known<0, -1>(p, side);
    known[kXPlus] = march.template known<0, 1>(p, side);
    known[kYMinus] = march.template known<1, -1>(p, side);
    known[kYPlus] = march.template known<1, 1>(p, side);
    known[kZMinus] = march.template known<2, -1>(p, side);
    known[kZPlus] = march.template known<2, 1>(p, side);
    return known;
}

/// Tentative distances for a march, dense or of a band.
class Estimator3D {
 public:
    explicit Estimator3D(const std::array<double, 3>& h) : quadratics_(h[0], h[1], h[2]) {}

    template <class March, class Point>
    double reach(March& march, const Point& q, State side) const {
        const Estimate3D estimate = estimateFrom(knownNeighbours(march, q, side), quadratics_);
        march.keep(q, static_cast<int>(estimate.source));
        return estimate.distance;
    }

    /// As long as all have spread, the neighbour that has just become known is the first.
    template <int axis, int step, class March, class Point>
    double reachFrom(March& march, const Point& q, State side) const {
        if (!march.haveAllSpread()) return reach(march, q, side);
        RunningMin nearest;
        nearest.offer(quadratics_.single(axis, march.template distanceBeside<axis, step>(q)));
        return nearest.best;
    }

    /// Then, too, only candidates that it is part of can be new (see improved).
    template <int axis, int step, class March, class Point>
    double improve(March& march, const Point& q, State side, double last) const {
        if (!march.haveAllSpread() || !(last < kUsable)) return reach(march, q, side);
        constexpr int kLower = axis == 0 ? 1 : 0, kHigher = axis == 2 ? 1 : 2;
        auto source = static_cast<Source3D>(march.kept(q));
        const double here = march.template distanceBeside<axis, step>(q);
        const double next = improved<axis>(last, source, here, along<kLower>(march, q, side),
                                           along<kHigher>(march, q, side), quadratics_);
        march.keep(q, static_cast<int>(source));
        return next;
    }

 private:
    template <int axis, class March, class Point>
    static KnownAlongAxis along(const March& march, const Point& q, State side) {
        KnownAlongAxis known;
        known.add(march.template known<axis, -1>(q, side));
        known.add(march.template known<axis, 1>(q, side));
        return known;
    }

    EikonalQuadratics3D quadratics_;
};

}  // namespace lset::detail
