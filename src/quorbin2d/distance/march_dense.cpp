#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <vector>

#include "common/distance/dense_march.h"
#include "common/watch.h"
#include "quorbin2d/distance/estimate.h"
#include "quorbin2d/distance/front_dense.h"

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

template <class Watch>
void FullLevelSet2D::march(Watch watch) {
    std::vector<signed char> states(size(), kFar);
    double* const distances = scratch_.get();
    std::fill_n(distances, size(), 0.0);
    const Front front = findFront(*this, {width_, height_}, states.data(), distances);

    // The field's own spacings and values are not read any more: from here on no subclass can see anything.
    DenseMarch<2, Estimator2D> marched(distances, states.data(), {width_, height_},
                                       {getXSpace(), getYSpace()});
    MarchQueue queue;
    lset::detail::march(marched, front.outside, kOutside, queue, watch);
    lset::detail::march(marched, front.inside, kInside, queue, watch);
    for (std::size_t i = 0; i < states.size(); ++i) values_[i] = states[i] * distances[i];
}

void FullLevelSet2D::ensureSignedDistanceFMM() {
    if (size() > INT_MAX) return;
    march(Unwatched());
}

bool quorbin::ensureSignedDistanceFMM(FullLevelSet2D& field, const Progress& progress) {
    if (field.size() > INT_MAX) return true;
    if (progress) return isDoneToTheEnd([&] { field.march(Watch(progress, field.size())); });
    field.ensureSignedDistanceFMM();
    return true;
}
