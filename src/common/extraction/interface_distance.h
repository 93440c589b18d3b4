#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "common/distance/point_sampler.h"
#include "common/vector.h"
#include "compare.h"

namespace lset::detail {

/// A point of an interface, and the length or area around it.
template <std::size_t dimensions>
struct WeightedPoint {
    Vector<dimensions> at;
    double weight;
};

constexpr quorbin::InterfaceDistance kNoInterfaceDistance = {std::numeric_limits<double>::quiet_NaN(),
                                                             std::numeric_limits<double>::quiet_NaN()};

/// Moves the points of a contour on to the interface of the local cubics of its level set.
template <std::size_t dimensions, class Source>
void moveOnto(const Source& source, const Vector<dimensions>& h,
              std::vector<WeightedPoint<dimensions>>& points, Stretch stretch) {
    stretch.expect(kStepsOfASample * points.size());
    PointSampler<dimensions, Source> sampler(source, h);
    const double largest = *std::max_element(h.begin(), h.end());
    for (auto& point : points) {
        stretch.step(kStepsOfASample);
        typename LocalInterpolant<dimensions>::Values found;
        if (!sampler.template read<true>(point.at, found)) continue;
        const Vector<dimensions> closest = sampler.closest(point.at, found);
        if (lengthOf(difference(closest, point.at)) <= largest) point.at = closest;  // not-a-number is not
    }
}

/// The mean and the largest of the distances of points, each written by distanceOf(place, distance). None if
/// there are no points, or if it returns false for one of them.
template <std::size_t dimensions, class DistanceOf>
quorbin::InterfaceDistance meanDistance(const std::vector<WeightedPoint<dimensions>>& points, Stretch stretch,
                                        DistanceOf distanceOf) {
    stretch.expect(kStepsOfASample * points.size());
    double weights = 0, sum = 0, largest = 0;
    for (const auto& point : points) {
        stretch.step(kStepsOfASample);
        double here;
        if (!distanceOf(point.at, here)) return kNoInterfaceDistance;
        weights += point.weight;
        sum += point.weight * here;
        largest = std::max(largest, here);
    }
    return {sum / weights, largest};
}

/// The same by the values of a signed distance; one of the points may lie where there is none.
template <std::size_t dimensions, class Source>
quorbin::InterfaceDistance measuredDistance(const Source& source, const Vector<dimensions>& h,
                                            const std::vector<WeightedPoint<dimensions>>& points,
                                            const Stretch& stretch) {
    PointSampler<dimensions, Source> sampler(source, h);
    return meanDistance(points, stretch, [&](const Vector<dimensions>& p, double& distance) {
        typename LocalInterpolant<dimensions>::Values found;
        if (!sampler.template read<false>(p, found)) return false;
        distance = std::abs(found.value);
        return true;
    });
}

/// The parts put together; contents are areas or volumes.
inline quorbin::Comparison comparison(double first, double second, double both,
                                      const quorbin::InterfaceDistance& fromFirst,
                                      const quorbin::InterfaceDistance& fromSecond) {
    quorbin::Comparison result;
    result.dice = first + second > 0 ? 2 * both / (first + second) : 1;
    result.symmetricDifference = first + second - 2 * both;
    result.fromFirst = fromFirst;
    result.fromSecond = fromSecond;
    result.meanDistance = 0.5 * (fromFirst.mean + fromSecond.mean);
    result.hausdorffDistance = std::max(fromFirst.largest, fromSecond.largest);
    return result;
}

}  // namespace lset::detail
