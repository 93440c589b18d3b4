#pragma once

#include <cassert>

namespace lset::detail {

/// Mirrors a grid coordinate once into 0 … n − 1. Below the grid the edge point is not repeated (−1 gives 1),
/// above it is (n gives n − 1); the two ends differ by choice (test: DenseStorage.IsMirroredOnceAtEachEnd).
inline int mirror(int c, int n) {
    int a = c < 0 ? -c : c;
    if (a >= n) a = n - 1 - a + n;
    assert(a >= 0 && a < n);
    return a;
}

}  // namespace lset::detail
