#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "common/distance/continued_block.h"
#include "common/distance/local_interpolant.h"
#include "common/distance/newton_step.h"
#include "common/distance/reinitialize_checks.h"
#include "common/vector.h"
#include "common/watch.h"

namespace lset::detail {

/// Reads a level set between its samples (see quorbin::sample). Source tells of these:
///
///     value(p)              the sample with these coordinates, not-a-number where there is none
///     holds(place)          whether a place in grid-index units is within the grid
///     movedInward(first)    the first sample of the block of four an axis to take instead of one
template <std::size_t dimensions, class Source>
class PointSampler {
 public:
    using Point = std::array<int, dimensions>;
    using Values = typename LocalInterpolant<dimensions>::Values;

    PointSampler(const Source& source, const Vector<dimensions>& h) : source_(source), h_(h) {
        checkSpacings<dimensions>(h);
        largest_ = *std::max_element(h.begin(), h.end());
    }

    /// The field at a point in world units, its derivatives by those too; false where there is none.
    template <bool withHessian>
    bool read(const Vector<dimensions>& world, Values& found) {
        Vector<dimensions> place;
        Point cell;
        unsigned onSample = 0;  // axes, as bits
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            place[axis] = world[axis] / h_[axis];
            if (!(std::abs(place[axis]) < kFarthest)) return false;
            const double nearest = std::floor(place[axis] + 0.5);
            if (std::abs(place[axis] - nearest) <= kRounding) {
                place[axis] = nearest;
                onSample |= 1U << axis;
            }
            cell[axis] = static_cast<int>(std::floor(place[axis]));
        }
        if (!source_.holds(place)) return false;
        // A sample belongs to the cells on all its sides.
        for (unsigned before = 0; before < 1U << dimensions; ++before) {
            if ((before & ~onSample) != 0) continue;
            Point first;
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                first[axis] = cell[axis] - 1 - static_cast<int>(before >> axis & 1);
            if (!readBlock(first)) continue;
            for (std::size_t axis = 0; axis < dimensions; ++axis) place[axis] -= first[axis];
            found = interpolant_.template at<withHessian>(place);
            scaleToWorld<withHessian>(found);
            return true;
        }
        return false;
    }

    /// The closest point of the interface to a point with this value and gradient, if the field is a
    /// distance.
    Vector<dimensions> closest(const Vector<dimensions>& p, const Values& there) {
        constexpr int kSteps = 12;
        constexpr double kConverged = 1e-9;
        const double slope = lengthOf(there.gradient);
        Vector<dimensions> x = scaled(there.gradient, -there.value / slope);  // from p
        const Vector<dimensions> guess = sum(p, 1, x);
        double lambda = 0;
        for (int step = 0; step < kSteps; ++step) {
            Values found;
            if (!read<true>(sum(p, 1, x), found)) return guess;
            if (step == 0) lambda = -dot(x, found.gradient) / dot(found.gradient, found.gradient);
            const Vector<dimensions> moved =
                newtonStep(x, found.value, found.gradient, found.hessian, lambda);
            const double size = lengthOf(moved);
            if (!(size < 2 * largest_)) return guess;
            x = sum(x, 1, moved);
            if (size > kConverged * largest_) continue;
            return std::abs(lengthOf(x) - std::abs(there.value)) <= largest_ ? sum(p, 1, x) : guess;
        }
        return guess;
    }

 private:
    static constexpr double kFarthest = 2147483000;  // cells beyond have no coordinates
    static constexpr double kRounding = 1e-9;        // of the way from world to grid units

    /// Reads the block that begins there, or the one further inward, which first then tells.
    bool readBlock(Point& first) {
        Point inward = source_.movedInward(first);
        if (gather(inward) == 0) {
            first = inward;
            return true;
        }
        const std::uint64_t missing = gather(first);
        return missing == 0 || continueInto<dimensions>(missing, interpolant_.samples);
    }

    /// Those that are not finite, as bits.
    std::uint64_t gather(const Point& first) {
        std::uint64_t missing = 0;
        for (unsigned i = 0; i < interpolant_.samples.size(); ++i) {
            Point p = first;
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                p[axis] += static_cast<int>(i >> (2 * axis) & (kBlockSide - 1));
            const double value = source_.value(p);
            interpolant_.samples[i] = value;
            if (!std::isfinite(value)) missing |= std::uint64_t{1} << i;
        }
        return missing;
    }

    template <bool withHessian>
    void scaleToWorld(Values& found) const {
        for (std::size_t i = 0; i < dimensions; ++i) {
            found.gradient[i] /= h_[i];
            if constexpr (withHessian)
                for (std::size_t j = 0; j < dimensions; ++j) found.hessian[i][j] /= h_[i] * h_[j];
        }
    }

    const Source& source_;
    Vector<dimensions> h_;
    double largest_;
    LocalInterpolant<dimensions> interpolant_;
};

/// The samples of a dense grid. Along an axis of one point they are the same everywhere.
template <std::size_t dimensions>
class DenseSource {
 public:
    using Point = std::array<int, dimensions>;

    DenseSource(const double* values, const Point& sizes) : values_(values), sizes_(sizes) {}

    double value(const Point& p) const {
        std::ptrdiff_t i = 0, stride = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const int c = sizes_[axis] == 1 ? 0 : p[axis];
            if (c < 0 || c >= sizes_[axis]) return std::numeric_limits<double>::quiet_NaN();
            i += c * stride;
            stride *= sizes_[axis];
        }
        return values_[i];
    }
    bool holds(const Vector<dimensions>& place) const {
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            if (!(place[axis] >= 0 && place[axis] <= sizes_[axis] - 1)) return false;
        return true;
    }
    Point movedInward(Point first) const {
        constexpr int kSide = kBlockSide;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            if (sizes_[axis] >= kSide) first[axis] = std::clamp(first[axis], 0, sizes_[axis] - kSide);
        return first;
    }

 private:
    const double* values_;
    Point sizes_;
};

constexpr std::size_t kStepsOfASample = 32;

/// What the library tells of points; Sample is Sample2D or Sample3D.
template <class Sample, std::size_t dimensions, class Source, class Points>
std::vector<Sample> samplesAt(const Source& source, const Vector<dimensions>& h, const Points& points,
                              Stretch stretch) {
    PointSampler<dimensions, Source> sampler(source, h);
    std::vector<Sample> samples;
    samples.reserve(points.size());
    stretch.expect(kStepsOfASample * points.size());
    for (const auto& point : points) {
        stretch.step(kStepsOfASample);
        Vector<dimensions> p;
        for (std::size_t axis = 0; axis < dimensions; ++axis) p[axis] = point[static_cast<int>(axis)];
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        typename LocalInterpolant<dimensions>::Values found;
        Vector<dimensions> closest;
        closest.fill(kNone);
        if (sampler.template read<false>(p, found)) {
            closest = sampler.closest(p, found);
        } else {
            found.value = kNone;
            found.gradient.fill(kNone);
        }
        samples.emplace_back();
        samples.back().value = found.value;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            samples.back().gradient[static_cast<int>(axis)] = found.gradient[axis];
            samples.back().closest[static_cast<int>(axis)] = closest[axis];
        }
    }
    return samples;
}

}  // namespace lset::detail
