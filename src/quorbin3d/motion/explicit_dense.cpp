#include <algorithm>
#include <cstddef>

#include "common/states.h"
#include "quorbin3d/differences/readers.h"
#include "quorbin3d/motion/curvature_layers.h"

using namespace lset::detail;

namespace {

/// The step as any subclass sees it: value and curvature through their slots, into a second array.
void curvatureStep(const VirtualReader3D& field, double* values, double* next, int width, int height,
                   int depth, double dt) {
    double* target = next;
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const double value = field.get(x, y, z);
                const double curvature = field.curvature(x, y, z);
                *target++ = value + dt * curvature;
            }
    std::copy(next, target, values);
}

void curvatureStep(const DenseReader3D& field, double* values, double* saved, int width, int height,
                   int depth, double dt) {
    curvatureLayers(values, saved, {width, height, depth}, field.hx(), field.hy(), field.hz(), dt);
}

}  // namespace

void FullLevelSet3D::moveAlongCurvature() {
    const double hx = getXSpace(), hy = getYSpace(), hz = getZSpace();
    const double dt = 1.0 / (2.0 / (hx * hx) + 2.0 / (hy * hy) + 2.0 / (hz * hz));
    withReader(*this, [&](const auto& field) {
        curvatureStep(field, values_.get(), scratch_.get(), width_, height_, depth_, dt);
    });
}

double FullLevelSet3D::moveWithCurvature(
    const boost::function<double(LevelSet3D*, int, int, int, double*)>& f) {
    double smallestLimit = kNoDistance;
    double limit = 0.0;  // one slot for all points, as on the dense 2D grid
    double* rate = scratch_.get();
    const int width = width_, height = height_, depth = depth_;
    const unsigned generation = generation_;
    for (int z = 0; z < depth; ++z)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const double rateHere = f(this, x, y, z, &limit);
                // The callback may have released the grid or made another of it.
                if (generation_ != generation) return 0.0;
                *rate++ = rateHere;
                if (limit < smallestLimit) smallestLimit = limit;
            }
    const std::size_t points = size();
    for (std::size_t i = 0; i < points; ++i) values_[i] = values_[i] + smallestLimit * scratch_[i];
    return smallestLimit;
}
