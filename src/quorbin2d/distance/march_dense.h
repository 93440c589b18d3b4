#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/distance/dense_march.h"
#include "common/watch.h"
#include "quorbin2d/distance/estimate.h"
#include "quorbin2d/distance/front_dense.h"

/// Watched and unwatched are instantiated in sources of their own: side by side, the compiler would inline
/// less into the loop that nobody watches.
template <class Watch>
void FullLevelSet2D::march(Watch watch) {
    using namespace lset::detail;
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
