#include <array>
#include <climits>
#include <cstddef>

#include "quorbin2d/distance/march_dense.h"

using namespace lset::detail;

double FullLevelSet2D::estimateDistance(const double* distances, const char* states, int sign, int x,
                                        int y) const {
    const std::array<double, 2> h = {getXSpace(), getYSpace()};
    using March = DenseMarch<2, Estimator2D>;
    // States are signed numbers whatever the sign of char. Neither array is written.
    const March march(const_cast<double*>(distances),
                      reinterpret_cast<signed char*>(const_cast<char*>(states)), {width_, height_}, h);
    const March::Point p{{x}, static_cast<std::ptrdiff_t>(y) * width_ + x};
    return estimateFrom(knownNeighbours(march, p, sign), h[0], h[1], EikonalQuadratic(h[0], h[1])).distance;
}

void FullLevelSet2D::ensureSignedDistanceFMM() {
    if (size() > INT_MAX) return;
    march<Unwatched>(Stretch());
}
