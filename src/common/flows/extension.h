#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "common/flows/flow_parts.h"
#include "sample.h"

namespace lset::detail {

/// See quorbin::extended.
template <class Point, class Grid>
std::vector<double> extendedOnGrid(const Grid& distance, const std::vector<double>& speeds) {
    constexpr std::size_t dimensions = DenseTraits<Grid>::dimensions;
    const FlowLattice<Point, dimensions> lattice{DenseTraits<Grid>::sizes(distance),
                                                 DenseTraits<Grid>::spacings(distance)};
    if (speeds.size() != lattice.count())
        throw std::invalid_argument("there must be as many speeds as the grid has points");
    std::vector<double> result(speeds.size());
    const auto width = static_cast<std::size_t>(lattice.sizes[0]);
    std::vector<Point> row(width);
    for (std::size_t first = 0; first < speeds.size(); first += width) {
        for (std::size_t x = 0; x < width; ++x) row[x] = lattice.placeOf(lattice.siteOf(first + x));
        const auto samples = quorbin::sample(distance, row);
        for (std::size_t x = 0; x < width; ++x) {
            // Beside samples that are not finite there is no closest point.
            const Point& closest = samples[x].closest;
            result[first + x] = std::isfinite(dot(closest, closest))
                                    ? interpolated<double>(lattice, speeds, closest)
                                    : speeds[first + x];
        }
    }
    return result;
}

}  // namespace lset::detail
