#pragma once

#include <array>

#include "common/distance/eikonal_quadratic.h"
#include "common/states.h"

namespace lset::detail {

/// The neighbours of a point: each null unless it is known, else its distance.
struct KnownNeighbours2D {
    const double *right, *left, *up, *down;
};

/// From how many axes a tentative distance is.
enum class Source2D { kSingle, kPair };
struct Estimate2D {
    double distance;
    Source2D source;
};

/// Tentative distance of a point from those of its neighbours that are known. A usable pair of neighbours on
/// different axes rules out the single ones, however near.
inline Estimate2D estimateFrom(const KnownNeighbours2D& known, double hx, double hy,
                               const EikonalQuadratic& quadratic) {
    const auto [right, left, up, down] = known;
    RunningMin nearest;
    if (up && right) nearest.offer(quadratic(*right, *up));
    if (up && left) nearest.offer(quadratic(*left, *up));
    if (down && left) nearest.offer(quadratic(*left, *down));
    if (down && right) nearest.offer(quadratic(*right, *down));
    if (nearest.best < kNoDistance) return {nearest.best, Source2D::kPair};
    if (right) nearest.offer(*right + hx);
    if (up) nearest.offer(*up + hy);
    if (down) nearest.offer(*down + hy);
    if (left) nearest.offer(*left + hx);
    return {nearest.best, Source2D::kSingle};
}

/// The neighbours of a point under a march that are known on a side.
template <class March, class Point>
KnownNeighbours2D knownNeighbours(const March& march, const Point& p, int side) {
    return {march.template known<0, 1>(p, side), march.template known<0, -1>(p, side),
            march.template known<1, 1>(p, side), march.template known<1, -1>(p, side)};
}

/// Tentative distances for a march, dense or of a band.
class Estimator2D {
 public:
    explicit Estimator2D(const std::array<double, 2>& h) : h_(h), quadratic_(h[0], h[1]) {}

    template <class March, class Point>
    double reach(March& march, const Point& q, State side) const {
        const Estimate2D estimate = estimateFrom(knownNeighbours(march, q, side), h_[0], h_[1], quadratic_);
        march.keep(q, static_cast<int>(estimate.source));
        return estimate.distance;
    }

    /// As long as all have spread, the neighbour that has just become known is the first.
    template <int axis, int step, class March, class Point>
    double reachFrom(March& march, const Point& q, State side) const {
        if (!march.haveAllSpread()) return reach(march, q, side);
        RunningMin nearest;
        nearest.offer(march.template distanceBeside<axis, step>(q) + h_[axis]);
        return nearest.best;
    }

    /// Then, too, only pairs that it is part of can be new; the minimum over the others is the last distance.
    template <int axis, int step, class March, class Point>
    double improve(March& march, const Point& q, State side, double last) const {
        if (!march.haveAllSpread()) return reach(march, q, side);
        const double here = march.template distanceBeside<axis, step>(q);
        constexpr int kOther = 1 - axis;
        RunningMin nearest;
        const auto offerPair = [&](const double* other) {
            if (other != nullptr)
                nearest.offer(axis == 0 ? quadratic_(here, *other) : quadratic_(*other, here));
        };
        offerPair(march.template known<kOther, 1>(q, side));
        offerPair(march.template known<kOther, -1>(q, side));
        if (march.kept(q) == static_cast<int>(Source2D::kSingle)) {
            if (nearest.best < kNoDistance) {
                march.keep(q, static_cast<int>(Source2D::kPair));
                return nearest.best;
            }
            nearest.offer(here + h_[axis]);
        }
        return last > nearest.best ? nearest.best : last;
    }

 private:
    std::array<double, 2> h_;
    EikonalQuadratic quadratic_;
};

}  // namespace lset::detail
