#include "quorbin3d/motion/curvature_layers.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "common/differences/divide.h"
#include "common/motion/explicit_row.h"
#include "common/storage/mirror.h"
#include "quorbin3d/differences/stencils.h"

namespace lset::detail {

namespace {

/// A row of the old field and the four beside it.
struct OldRows {
    const double* __restrict here;
    const double* __restrict before;  // along y
    const double* __restrict after;
    const double* __restrict below;  // along z
    const double* __restrict above;
    const double* ahead;  // what the next rows will be the first to read
};

template <class OverX, class OverY, class OverZ>
void stepCurvatureRow(const OldRows& old, int width, double dt, OverX overX, OverY overY, OverZ overZ,
                      double* __restrict next) {
    stepRow(width, old.ahead, next, [&](int x, int xm, int xp) {
        const double p = old.here[x];
        return p + dt * sevenPoint(p, old.here[xp], old.here[xm], old.after[x], old.before[x], old.above[x],
                                   old.below[x], overX, overY, overZ);
    });
}

}  // namespace

void curvatureLayers(double* values, double* saved, Extent3D extent, double hx, double hy, double hz,
                     double dt) {
    const auto [width, height, depth] = extent;
    if (width == 0 || height == 0) return;
    const std::ptrdiff_t stride = width, layer = stride * height;
    // The old values of the layer under way and of the one below it stay near; that above is still untouched.
    double* below = saved;
    double* here = depth > 1 ? saved + layer : saved;
    for (int z = 0; z < depth; ++z) {
        double* const next = values + z * layer;
        std::copy_n(next, layer, here);
        const double* const lower = z > 0 ? below : depth > 1 ? next + layer : here;
        const double* const upper = z + 1 < depth ? next + layer : here;
        for (int y = 0; y < height; ++y) {
            const OldRows old{here + y * stride,
                              here + mirror(y - 1, height) * stride,
                              here + mirror(y + 1, height) * stride,
                              lower + y * stride,
                              upper + y * stride,
                              upper + std::min(y + 2, height - 1) * stride};
            withDivision(
                [&](auto overX, auto overY, auto overZ) {
                    stepCurvatureRow(old, extent.width, dt, overX, overY, overZ, next + y * stride);
                },
                hx * hx, hy * hy, hz * hz);
        }
        std::swap(below, here);
    }
}

}  // namespace lset::detail
