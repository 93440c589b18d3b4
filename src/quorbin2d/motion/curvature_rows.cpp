#include "quorbin2d/motion/curvature_rows.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "common/motion/explicit_row.h"
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
void stepCurvatureRow(const OldRows& old, int width, double dt, OverX overX, OverY overY,
                      double* __restrict next) {
    stepRow(width, old.ahead, next, [&](int x, int before, int after) {
        const double c = old.here[x];
        return c + dt * fivePoint(c * -2.0, old.here[after], old.here[before], old.above[x], old.below[x],
                                  overX, overY);
    });
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
        stepCurvatureRow({lower, here, upper, row(std::min(y + 2, height - 1))}, width, dt, overX, overY,
                         row(y));
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
