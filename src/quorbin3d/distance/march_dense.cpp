#include <array>
#include <climits>
#include <cstddef>

#include "quorbin3d/distance/march_dense.h"

using namespace lset::detail;

double FullLevelSet3D::estimateDistance(const double* distances, const char* states, int sign, int x, int y,
                                        int z) const {
    const std::array<double, 3> h = {getXSpace(), getYSpace(), getZSpace()};
    using March = DenseMarch<3, Estimator3D>;
    // States are signed numbers whatever the sign of char. Neither array is written.
    const March march(const_cast<double*>(distances),
                      reinterpret_cast<signed char*>(const_cast<char*>(states)), {width_, height_, depth_},
                      h);
    const March::Point p{{x, y}, (std::ptrdiff_t{z} * height_ + y) * width_ + x};
    return estimateFrom(knownNeighbours(march, p, sign), EikonalQuadratics3D(h[0], h[1], h[2])).distance;
}

void FullLevelSet3D::ensureSignedDistanceFMM() {
    if (size() == 0 || size() > INT_MAX) return;
    march<Unwatched>(Stretch());
}
