#pragma once

#include "common/states.h"
#include "quorbin2d/distance/eikonal_quadratic.h"

namespace lset::detail {

struct Estimate {
    double distance;
    bool fromPair;
};

/// Tentative distance of a point from those of its neighbours that are known. known and distance take a direction, the steps
/// along x and y as template arguments. A usable pair of neighbours on different axes rules out the single ones, however near.
template <class Neighbours>
Estimate estimateFrom(const Neighbours& neighbours, double hx, double hy,
                      const EikonalQuadratic2D& quadratic) {
    const bool up = neighbours.template isKnown<0, 1>(), down = neighbours.template isKnown<0, -1>();
    const bool right = neighbours.template isKnown<1, 0>(), left = neighbours.template isKnown<-1, 0>();
    const auto above = [&] { return neighbours.template distance<0, 1>(); };
    const auto below = [&] { return neighbours.template distance<0, -1>(); };
    const auto toRight = [&] { return neighbours.template distance<1, 0>(); };
    const auto toLeft = [&] { return neighbours.template distance<-1, 0>(); };

    RunningMin nearest;
    if (up && right) nearest.offer(quadratic(toRight(), above()));
    if (up && left) nearest.offer(quadratic(toLeft(), above()));
    if (down && left) nearest.offer(quadratic(toLeft(), below()));
    if (down && right) nearest.offer(quadratic(toRight(), below()));
    if (nearest.best < kNoDistance) return {nearest.best, true};
    if (right) nearest.offer(toRight() + hx);
    if (up) nearest.offer(above() + hy);
    if (down) nearest.offer(below() + hy);
    if (left) nearest.offer(toLeft() + hx);
    return {nearest.best, false};
}

}  // namespace lset::detail
