#pragma once

#include "common/storage/mirror.h"

namespace lset::detail {

/// Writes a row of an explicit step: next[x] = moved(x, before, after), with the columns beside x, mirrored
/// at the ends. ahead is what the next rows will be the first to read. For a loop that vectorises, moved
/// refers to pointers that are __restrict; copies in a closure are not.
template <class Moved>
void stepRow(int width, const double* ahead, double* __restrict next, Moved moved) {
    // The hardware fetches ahead within a page only; a cache line holds eight values.
    constexpr int kLine = 8;
    next[0] = moved(0, mirror(-1, width), mirror(1, width));
    int x = 1;
    for (; x + kLine <= width - 1; x += kLine) {
        __builtin_prefetch(ahead + x + kLine);
        for (int k = x; k < x + kLine; ++k) next[k] = moved(k, k - 1, k + 1);
    }
    for (; x < width - 1; ++x) next[x] = moved(x, x - 1, x + 1);
    if (width > 1) next[width - 1] = moved(width - 1, width - 2, width - 1);
}

}  // namespace lset::detail
