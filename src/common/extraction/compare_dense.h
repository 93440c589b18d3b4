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

    ComparedGrid(const Grid& grid, const Stretch& stretch)
        : distance(copyOf(grid, stretch.part(0, 0.1))),
          isCrossed(reinitializedIfCrossed(distance, stretch.part(0.1, 1))) {
        if (isCrossed) return;
        constexpr double kFar = 1e300;
        changeAll(distance, stretch.part(1, 1), [](double value) { return value <= 0 ? -kFar : kFar; });
    }

    DenseSource<dimensions> source() const { return {distance.data(), DenseTraits<Grid>::sizes(distance)}; }
};

/// See quorbin::compare. Interface::contentOf(field) gives the area or volume inside, and pointsOf(field)
/// those of the interface with their weights.
template <class Interface, class Grid>
quorbin::Comparison compareGrids(const Grid& a, const Grid& b, const Stretch& stretch) {
    using Traits = DenseTraits<Grid>;
    checkSameGrid(Traits::sizes(a), Traits::spacings(a), Traits::sizes(b), Traits::spacings(b));
    const ComparedGrid<Grid> first(a, stretch.part(0, 0.35)), second(b, stretch.part(0.35, 0.7));
    const auto h = Traits::spacings(a);
    const auto from = [&](const ComparedGrid<Grid>& here, const ComparedGrid<Grid>& there,
                          const Stretch& part) {
        if (!here.isCrossed || !there.isCrossed) return kNoInterfaceDistance;
        auto points = Interface::pointsOf(here.distance, part.part(0, 0.3));
        moveOnto<Traits::dimensions>(here.source(), h, points, part.part(0.3, 0.8));
        return measuredDistance<Traits::dimensions>(there.source(), h, points, part.part(0.8, 1));
    };
    const Grid both =
        combinedGrids(first.distance, second.distance, SetOperation::kIntersection, stretch.part(0.7, 0.75));
    const double contentOfFirst = Interface::contentOf(first.distance, stretch.part(0.75, 0.78));
    const double contentOfSecond = Interface::contentOf(second.distance, stretch.part(0.78, 0.81));
    const double contentOfBoth = Interface::contentOf(both, stretch.part(0.81, 0.84));
    const auto fromFirst = from(first, second, stretch.part(0.84, 0.92));
    return comparison(contentOfFirst, contentOfSecond, contentOfBoth, fromFirst,
                      from(second, first, stretch.part(0.92, 1)));
}

}  // namespace lset::detail
