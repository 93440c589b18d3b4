#pragma once

#include <cstdint>

namespace lset::detail {

/// A coordinate some steps further on; at the ends of its range it wraps around, as the hash of points does.
inline int stepped(int coordinate, int by) {
    return static_cast<int>(static_cast<std::uint32_t>(coordinate) + static_cast<std::uint32_t>(by));
}

}  // namespace lset::detail
