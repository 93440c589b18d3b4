#pragma once

#include <cmath>
#include <cstddef>

#include "band/distance/set_operations_band.h"
#include "common/distance/offset_dense.h"

namespace lset::detail {

/// In steps, so that a band is never as wide as a long way.
template <class Band>
Band offsetBand(const Band& band, double distance, const Stretch& stretch) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    constexpr double kStep = 16;   // of the largest spacing
    constexpr double kMargin = 3;  // of it too: what the cubics around the new interface need
    const double largest = largestOfOffset<dimensions>(BandTraits<Band>::spacings(band), distance);
    const double count = std::max(std::ceil(std::abs(distance) / (kStep * largest)), 1.0);
    const double part = distance / count;
    Band result = copyOfBand(band, stretch.part(0, 0.05));
    for (double step = 0; step < count; ++step) {
        const double width = std::abs(part) + kMargin * largest;
        const Stretch now = stretch.part(0.05 + 0.8 * step / count, 0.05 + 0.8 * (step + 1) / count);
        if (!reinitializedOrEmptied(result, width, now, OldValues::kForgotten)) return result;
        changeValues(result, now.part(1, 1), [&](double value) { return value - part; });
    }
    reinitializedOrEmptied(result, 0, stretch.part(0.85, 1));
    return result;
}

}  // namespace lset::detail
