#include "quorbin3d/motion/curvature_layers.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "common/differences/divide.h"
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
void stepRow(const OldRows& old, int width, double dt, OverX overX, OverY overY, OverZ overZ,
             double* __restrict next) {
    const auto moved = [&](int x, int xm, int xp) {
        const double p = old.here[x];
        const double curvature = sevenPoint(p, old.here[xp], old.here[xm], old.after[x], old.before[x],
                                            old.above[x], old.below[x], overX, overY, overZ);
        return p + dt * curvature;
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
                    stepRow(old, extent.width, dt, overX, overY, overZ, next + y * stride);
                },
                hx * hx, hy * hy, hz * hz);
        }
        std::swap(below, here);
    }
}

}  // namespace lset::detail
