#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/distance/dense_march.h"
#include "common/watch.h"
#include "quorbin3d/distance/estimate.h"
#include "quorbin3d/distance/front_dense.h"

/// Watched and unwatched are instantiated in sources of their own: side by side, the compiler would inline
/// less into the loop that nobody watches.
template <class Watch>
void FullLevelSet3D::march(const lset::detail::Stretch& stretch) {
    using namespace lset::detail;
    std::vector<signed char> states = filled<signed char>(size(), kFar, stretch.part(0, 0.01));
    double* const distances = scratch_.get();
    inBlocks(size(), stretch.part(0.01, 0.03), [&](std::size_t first, std::size_t last) {
        std::fill(distances + first, distances + last, 0.0);
    });
    const Front front =
        findFront(*this, {width_, height_, depth_}, states.data(), distances, stretch.part(0.03, 0.05));

    // The field's own spacings and values are not read any more: from here on no subclass can see anything.
    DenseMarch<3, Estimator3D> marched(distances, states.data(), {width_, height_, depth_},
                                       {getXSpace(), getYSpace(), getZSpace()});
    MarchQueue queue;
    Stretch marching = stretch.part(0.05, 1);
    marching.expect(size());
    Watch watch(marching);
    lset::detail::march(marched, front.outside, kOutside, queue, watch);
    lset::detail::march(marched, front.inside, kInside, queue, watch);
    for (std::size_t i = 0; i < states.size(); ++i) values_[i] = states[i] * distances[i];
}
