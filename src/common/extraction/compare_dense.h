#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/distance/set_operations.h"
#include "common/extraction/interface_distance.h"

namespace lset::detail {

/// A grid as a signed distance; without an interface, as far values of its side.
template <class Grid>
struct ComparedGrid {
    static constexpr std::size_t dimensions = DenseTraits<Grid>::dimensions;

    Grid distance;
    bool isCrossed;

    explicit ComparedGrid(const Grid& grid)
        : distance(copyOf(grid)), isCrossed(reinitializedIfCrossed(distance)) {
        if (isCrossed) return;
        constexpr double kFar = 1e300;
        double* const values = distance.data();
        std::transform(values, values + pointCount(distance), values,
                       [](double value) { return value <= 0 ? -kFar : kFar; });
    }

    DenseSource<dimensions> source() const { return {distance.data(), DenseTraits<Grid>::sizes(distance)}; }
};

/// See quorbin::compare. Interface::contentOf(field) gives the area or volume inside, and pointsOf(field)
/// those of the interface with their weights.
template <class Interface, class Grid>
quorbin::Comparison compareGrids(const Grid& a, const Grid& b) {
    using Traits = DenseTraits<Grid>;
    checkSameGrid(Traits::sizes(a), Traits::spacings(a), Traits::sizes(b), Traits::spacings(b));
    const ComparedGrid<Grid> first(a), second(b);
    const auto h = Traits::spacings(a);
    const auto from = [&](const ComparedGrid<Grid>& here, const ComparedGrid<Grid>& there) {
        if (!here.isCrossed || !there.isCrossed) return kNoInterfaceDistance;
        auto points = Interface::pointsOf(here.distance);
        moveOnto<Traits::dimensions>(here.source(), h, points);
        return measuredDistance<Traits::dimensions>(there.source(), h, points);
    };
    const Grid both = combinedGrids(first.distance, second.distance, SetOperation::kIntersection);
    return comparison(Interface::contentOf(first.distance), Interface::contentOf(second.distance),
                      Interface::contentOf(both), from(first, second), from(second, first));
}

}  // namespace lset::detail
