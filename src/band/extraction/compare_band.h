#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "band/distance/band_source.h"
#include "band/distance/reinitialize_band.h"
#include "band/distance/set_operations_band.h"
#include "band/storage/band_access.h"
#include "common/extraction/feet_tree.h"
#include "common/extraction/interface_distance.h"

namespace lset::detail {

/// Distances from the interface of a band to that of another one, which has just been reinitialised.
template <class Interface, class Band>
quorbin::InterfaceDistance bandDistance(const Band& from, const Band& to, const Stretch& stretch) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    auto points = Interface::pointsOf(from, stretch.part(0, 0.2));
    moveOnto<dimensions>(BandSource<dimensions>(from.points()), BandTraits<Band>::spacings(from), points,
                         stretch.part(0.2, 0.6));
    const FeetTree<dimensions> feet(BandAccess::work(to).feet.feet, stretch.part(0.6, 0.7));
    return meanDistance(points, stretch.part(0.7, 1), [&](const Vector<dimensions>& p, double& distance) {
        distance = feet.distanceFrom(p);
        return true;
    });
}

/// See quorbin::compare; Interface as for compareGrids.
template <class Interface, class Band>
quorbin::Comparison compareBands(const Band& a, const Band& b, const Stretch& stretch) {
    Band first = copyOfBand(a, stretch.part(0, 0.05)), second = copyOfBand(b, stretch.part(0.05, 0.1));
    const bool isFirstCrossed = reinitializedOrEmptied(first, 0, stretch.part(0.1, 0.25));
    const bool isSecondCrossed = reinitializedOrEmptied(second, 0, stretch.part(0.25, 0.4));
    const Band both = combinedBands(first, second, SetOperation::kIntersection, stretch.part(0.4, 0.5));
    const auto from = [&](const Band& here, const Band& there, const Stretch& part) {
        return isFirstCrossed && isSecondCrossed ? bandDistance<Interface>(here, there, part)
                                                 : kNoInterfaceDistance;
    };
    const double contentOfFirst = Interface::contentOf(first, stretch.part(0.5, 0.55));
    const double contentOfSecond = Interface::contentOf(second, stretch.part(0.55, 0.6));
    const double contentOfBoth = Interface::contentOf(both, stretch.part(0.6, 0.65));
    const auto fromFirst = from(first, second, stretch.part(0.65, 0.82));
    return comparison(contentOfFirst, contentOfSecond, contentOfBoth, fromFirst,
                      from(second, first, stretch.part(0.82, 1)));
}

}  // namespace lset::detail
