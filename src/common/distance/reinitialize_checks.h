#pragma once

#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "common/storage/nearest.h"
#include "common/vector.h"
#include "reinitialize.h"

namespace lset::detail {

template <std::size_t dimensions>
void checkSpacings(const Vector<dimensions>& h) {
    for (const double spacing : h)
        if (!(spacing > 0) || std::isinf(spacing))
            throw std::invalid_argument("spacings must be positive finite numbers");
}

inline void checkFootCount(std::size_t count) {
    if (count >= Nearest::kNone) throw std::length_error("more than 268 million points beside the interface");
}

[[noreturn]] inline void throwNoInterface() {
    throw quorbin::NoInterface("all values are on one side of zero: there is no interface to measure from");
}

}  // namespace lset::detail
