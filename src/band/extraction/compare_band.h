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
quorbin::InterfaceDistance bandDistance(const Band& from, const Band& to) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    auto points = Interface::pointsOf(from);
    moveOnto<dimensions>(BandSource<dimensions>(from.points()), BandTraits<Band>::spacings(from), points);
    const FeetTree<dimensions> feet(BandAccess::work(to).feet.feet);
    return meanDistance(points, [&](const Vector<dimensions>& p, double& distance) {
        distance = feet.distanceFrom(p);
        return true;
    });
}

/// See quorbin::compare; Interface as for compareGrids.
template <class Interface, class Band>
quorbin::Comparison compareBands(const Band& a, const Band& b) {
    Band first(a), second(b);
    const bool isFirstCrossed = reinitializedOrEmptied(first, 0);
    const bool isSecondCrossed = reinitializedOrEmptied(second, 0);
    const Band both = combinedBands(first, second, SetOperation::kIntersection);
    const auto from = [&](const Band& here, const Band& there) {
        return isFirstCrossed && isSecondCrossed ? bandDistance<Interface>(here, there)
                                                 : kNoInterfaceDistance;
    };
    return comparison(Interface::contentOf(first), Interface::contentOf(second), Interface::contentOf(both),
                      from(first, second), from(second, first));
}

}  // namespace lset::detail
