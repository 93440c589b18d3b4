#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <tuple>

#include "band/storage/workspace.h"
#include "common/vector.h"

namespace lset::detail {

/// The samples of a band, for a PointSampler.
template <std::size_t dimensions>
class BandSource {
 public:
    using Point = std::array<int, dimensions>;

    explicit BandSource(const typename BandStorage<dimensions>::Hash& points) : points_(points) {}

    double value(const Point& p) const {
        const double* found = std::apply([&](auto... c) { return points_.find(c...); }, p);
        return found != nullptr ? *found : std::numeric_limits<double>::quiet_NaN();
    }
    bool holds(const Vector<dimensions>&) const { return true; }
    Point movedInward(const Point& first) const { return first; }

 private:
    const typename BandStorage<dimensions>::Hash& points_;
};

}  // namespace lset::detail
