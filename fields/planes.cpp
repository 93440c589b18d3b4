#include "planes.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "resampling.h"

namespace quorbin::fields {

FullLevelSet2D planeOf(const FullLevelSet3D& field, std::size_t axis, int index) {
    const auto getPlane = axis == 0   ? &FullLevelSet3D::getXPlane
                          : axis == 1 ? &FullLevelSet3D::getYPlane
                                      : &FullLevelSet3D::getZPlane;
    FullLevelSet2D plane;
    if (!(field.*getPlane)(index, plane, false)) throw std::bad_alloc();
    return plane;
}

bool makePixelsSquare(FullLevelSet2D& field, io::Image* picture) {
    const Lattice from = latticeOf(field), to = withSquarePixels(from);
    if (from.size == to.size && from.spacing == to.spacing) return false;
    resample(field, to);
    if (picture == nullptr) return true;
    picture->samples = resampled(picture->samples.data(), from, to);
    picture->width = to.size[0];
    picture->height = to.size[1];
    picture->placement.spacing = to.spacing;
    return true;
}

void makeGreys(io::Image& picture, double darkest, double brightest) {
    const double span = brightest > darkest ? brightest - darkest : 1;
    std::transform(
        picture.samples.begin(), picture.samples.end(), picture.samples.begin(),
        [=](double sample) { return std::clamp(std::round(255 * (sample - darkest) / span), 0.0, 255.0); });
}

}  // namespace quorbin::fields
