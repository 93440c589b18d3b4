#pragma once

#include <algorithm>
#include <cmath>

#include "brin/vec.h"

namespace lset::detail {

/// A segment made ready for measuring many points against it.
class MeasuredSegment {
 public:
    using Point = brin::Vec2<double>;

    MeasuredSegment(const Point& a, const Point& b) : a_(a), b_(b) {
        const Point along = b - a;
        length_ = std::sqrt(dot(along, along));
        if (length_ > 1e-15) unit_ = along / length_;
    }

    /// Squared distance from p.
    double squaredDistance(const Point& p) const {
        const Point w = p - a_, q = p - b_;
        const double toStart = dot(w, w), toEnd = dot(q, q);
        const double best = toStart > toEnd ? toEnd : toStart;
        const double t = dot(w, unit_);
        if (!(t >= 0 && length_ > t)) return best;
        const Point e = w - t * unit_;
        return std::min(best, dot(e, e));
    }

    /// Whether p is on the line or to the left of it (x right, y up).
    bool hasOnLeft(const Point& p) const {
        const Point w = p - a_;
        return w.x * unit_.y - w.y * unit_.x <= 0;
    }

 private:
    Point a_, b_, unit_;
    double length_;
};

}  // namespace lset::detail
