#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <vector>

#include "common/distance/dense_march.h"
#include "common/watch.h"
#include "quorbin3d/distance/estimate.h"
#include "quorbin3d/distance/front_dense.h"

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

template <class Watch>
void FullLevelSet3D::march(Watch watch) {
    std::vector<signed char> states(size(), kFar);
    double* const distances = scratch_.get();
    std::fill_n(distances, size(), 0.0);
    const Front front = findFront(*this, {width_, height_, depth_}, states.data(), distances);

    DenseMarch<3, Estimator3D> marched(distances, states.data(), {width_, height_, depth_},
                                       {getXSpace(), getYSpace(), getZSpace()});
    MarchQueue queue;
    lset::detail::march(marched, front.outside, kOutside, queue, watch);
    lset::detail::march(marched, front.inside, kInside, queue, watch);
    for (std::size_t i = 0; i < states.size(); ++i) values_[i] = states[i] * distances[i];
}

void FullLevelSet3D::ensureSignedDistanceFMM() {
    if (size() == 0 || size() > INT_MAX) return;
    march(Unwatched());
}

bool quorbin::ensureSignedDistanceFMM(FullLevelSet3D& field, const Progress& progress) {
    if (field.size() == 0 || field.size() > INT_MAX) return true;
    if (progress) return isDoneToTheEnd([&] { field.march(Watch(progress, field.size())); });
    field.ensureSignedDistanceFMM();
    return true;
}
