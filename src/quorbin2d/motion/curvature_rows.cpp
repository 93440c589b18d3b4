#include "quorbin2d/motion/curvature_rows.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "common/storage/mirror.h"
#include "quorbin2d/differences/stencils.h"

namespace lset::detail {

namespace {

/// A row of the old field between its neighbours; ahead is the row that the next step will be the first to
/// read.
struct OldRows {
    const double* __restrict below;
    const double* __restrict here;
    const double* __restrict above;
    const double* ahead;
};

template <class OverX, class OverY>
void stepRow(const OldRows& old, int width, double dt, OverX overX, OverY overY, double* __restrict next) {
    const auto moved = [&](int x, int xm, int xp) {
        const double c = old.here[x];
        const double curvature =
            fivePoint(c * -2.0, old.here[xp], old.here[xm], old.above[x], old.below[x], overX, overY);
        return c + dt * curvature;
    };
    // The hardware fetches ahead within a page only; a cache line holds eight values.
    constexpr int kLine = 8;
    next[0] = moved(0, mirror(-1, width), mirror(1, width));
    int x = 1;
    for (; x + kLine <= width - 1; x += kLine) {
        __builtin_prefetch(old.ahead + x + kLine);
        for (int k = x; k < x + kLine; ++k) next[k] = moved(k, k - 1, k + 1);
    }
    for (; x < width - 1; ++x) next[x] = moved(x, x - 1, x + 1);
    if (width > 1) next[width - 1] = moved(width - 1, width - 2, width - 1);
}

template <class OverX, class OverY>
void stepRows(double* values, double* saved, int width, int height, double dt, OverX overX, OverY overY) {
    const std::ptrdiff_t stride = width;
    // Rows of a whole number of pages would have loads wait for stores a page away.
    const std::ptrdiff_t apart = height >= 4 ? std::min<std::ptrdiff_t>(stride, 128) : 0;
    const auto row = [&](int y) { return values + y * stride; };
    double* below = saved + apart;
    double* here = height > 1 ? below + stride + apart : below;
    for (int y = 0; y < height; ++y) {
        std::copy_n(row(y), width, here);
        const double* lower = y > 0 ? below : height > 1 ? row(1) : here;
        const double* upper = y + 1 < height ? row(y + 1) : here;
        stepRow({lower, here, upper, row(std::min(y + 2, height - 1))}, width, dt, overX, overY, row(y));
        std::swap(below, here);
    }
}

}  // namespace

void curvatureRows(double* values, double* saved, int width, int height, double hx, double hy, double dt) {
    if (width == 0) return;
    withDivision([&](auto overX, auto overY) { stepRows(values, saved, width, height, dt, overX, overY); },
                 hx * hx, hy * hy);
}

}  // namespace lset::detail
