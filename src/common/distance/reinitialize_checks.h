#pragma once

#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "common/storage/nearest.h"
#include "common/vector.h"
#include "reinitialize.h"

namespace lset::detail {

/// Above, squares of distances are infinite, and no foot is the nearest.
constexpr double kLargestSpacing = 1e100;

template <std::size_t dimensions>
void checkSpacings(const Vector<dimensions>& h) {
    for (const double spacing : h)
        if (!(spacing > 0) || spacing > kLargestSpacing)
            throw std::invalid_argument("spacings must be positive numbers, at most 1e100");
}

inline void checkFootCount(std::size_t count) {
    if (count >= Nearest::kNone) throw std::length_error("more than 268 million points beside the interface");
}

[[noreturn]] inline void throwNoInterface() {
    throw quorbin::NoInterface("all values are on one side of zero: there is no interface to measure from");
}

}  // namespace lset::detail
