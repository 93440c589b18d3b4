#pragma once

#include <cstddef>

namespace lset::detail {

/// The neighbours of coordinate c on an axis of n points as implicit steps see them: reflected at both ends
/// without repeating the edge point (−1 is 1, n is n − 2), and on an axis of one point the point itself.
struct Reflected {
    std::ptrdiff_t before, after;

    Reflected(int c, int n) : before(c == 0 ? 1 : c - 1), after(c + 1 == n ? n - 2 : c + 1) {
        if (n == 1) before = after = 0;
    }
};

}  // namespace lset::detail
