#include "measure.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/contours.h"

namespace quorbin {

namespace {

using lset::detail::Stretch;
using Point = brin::Vec2<double>;

/// Sums over rings. Places are from one point of them, so that small figures far out lose no digits.
class RingSums {
 public:
    void add(const Ring& ring) {
        if (ring.empty()) return;
        if (isEmpty_) {
            origin_ = lowest_ = highest_ = ring.front();
            isEmpty_ = false;
        }
        Point a = ring.back() - origin_;
        for (const Point& point : ring) {
            const Point b = point - origin_, along = b - a;
            const double twice = a.x * b.y - a.y * b.x;
            area_ += twice / 2;
            moment_ += (a + b) * (twice / 6);
            length_ += std::sqrt(dot(along, along));
            lowest_ = {std::min(lowest_.x, point.x), std::min(lowest_.y, point.y)};
            highest_ = {std::max(highest_.x, point.x), std::max(highest_.y, point.y)};
            a = b;
        }
    }

    Figures2D figures(double totalCurvature) const {
        if (isEmpty_) {
            constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
            const Point none(kNone, kNone);
            return {0, 0, none, none, none, 0};
        }
        return {area_, length_, origin_ + moment_ / area_, lowest_, highest_, totalCurvature};
    }

 private:
    bool isEmpty_ = true;
    Point origin_, lowest_, highest_, moment_;
    double area_ = 0, length_ = 0;
};

Figures2D figuresOf(const std::vector<Polygon>& regions, Stretch stretch) {
    constexpr double kWholeTurn = 6.283185307179586;
    RingSums sums;
    double turns = 0;
    const auto add = [&](const Ring& ring) {
        sums.add(ring);
        stretch.step(ring.size());
    };
    for (const Polygon& region : regions) {
        add(region.outline);
        for (const Ring& hole : region.holes) add(hole);
        turns += (region.outline.empty() ? 0.0 : 1.0) - static_cast<double>(region.holes.size());
    }
    return sums.figures(turns * kWholeTurn);
}

template <class LevelSet>
std::optional<Figures2D> measured(const LevelSet& levelSet, const Progress& progress) {
    return lset::detail::unlessEnded(progress, [&](const Stretch& whole) {
        return figuresOf(lset::detail::toTheEnd(contours(levelSet, whole.part(0, 0.9).function())),
                         whole.part(0.9, 0.9));
    });
}

}  // namespace

std::optional<Figures2D> measure(const FullLevelSet2D& field, const Progress& progress) {
    return measured(field, progress);
}
std::optional<Figures2D> measure(const FastLevelSet2D& band, const Progress& progress) {
    return measured(band, progress);
}
Figures2D measure(const FullLevelSet2D& field) { return *measure(field, Progress()); }
Figures2D measure(const FastLevelSet2D& band) { return *measure(band, Progress()); }

}  // namespace quorbin
