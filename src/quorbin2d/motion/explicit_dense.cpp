#include <algorithm>
#include <cstddef>

#include "common/states.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/motion/curvature_rows.h"

using namespace lset::detail;

namespace {

/// The step as any subclass sees it: curvature and value through their slots, into a second array.
void curvatureStep(const VirtualReader2D& field, double* values, double* next, int width, int height,
                   double dt) {
    // Nobody uses these differences, but a subclass that overrides them sees every point asked for.
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            field.levelSet.getDxCentral(x, y);
            field.levelSet.getDyCentral(x, y);
        }
    const std::ptrdiff_t stride = width;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double curvature = field.curvature(x, y);
            const double value = field.get(x, y);
            next[y * stride + x] = value + dt * curvature;
        }
    std::copy_n(next, stride * height, values);
}

void curvatureStep(const DenseReader2D& field, double* values, double* saved, int width, int height,
                   double dt) {
    curvatureRows(values, saved, width, height, field.hx(), field.hy(), dt);
}

}  // namespace

void FullLevelSet2D::moveAlongCurvature() {
    const double hx = getXSpace(), hy = getYSpace();
    const double dt = 1.0 / (2.0 / (hx * hx) + 2.0 / (hy * hy));
    withReader(*this, [&](const auto& field) {
        curvatureStep(field, values_.get(), scratch_.get(), width_, height_, dt);
    });
}

void FullLevelSet2D::moveWithCurvature(const boost::function<double(LevelSet2D*, int, int, double*)>& f) {
    double smallestLimit = kNoDistance;
    double limit = 0.0;  // one slot for all points: where f does not write, the last one stands
    double* rate = scratch_.get();
    const int width = width_, height = height_;
    const unsigned generation = generation_;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double rateHere = f(this, x, y, &limit);
            // The callback may have released the grid or made another of it.
            if (generation_ != generation) return;
            *rate++ = rateHere;
            if (limit < smallestLimit) smallestLimit = limit;
        }
    const std::size_t points = size();
    for (std::size_t i = 0; i < points; ++i) values_[i] = values_[i] + smallestLimit * scratch_[i];
}
