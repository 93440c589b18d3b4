#include <algorithm>
#include <climits>
#include <cstddef>
#include <vector>

#include "common/march.h"
#include "quorbin2d/distance/dense_march.h"
#include "quorbin2d/distance/front_full.h"

using namespace lset::detail;

double FullLevelSet2D::estimateDistance(const double* distances, const char* states, int sign, int x,
                                        int y) const {
    const double hx = getXSpace(), hy = getYSpace();
    // States are signed numbers whatever the sign of char.
    const auto* signedStates = reinterpret_cast<const signed char*>(states);
    return estimateFrom(DenseNeighbours2D{distances, signedStates, sign, x, y, width_, height_}, hx, hy,
                        EikonalQuadratic2D(hx, hy))
        .distance;
}

void FullLevelSet2D::ensureSignedDistanceFMM() {
    if (size() > INT_MAX) return;
    std::vector<signed char> states(size(), kFar);
    double* distances = scratch_.get();
    std::fill_n(distances, size(), 0.0);
    const Front2D front = findFront(*this, states.data(), distances, width_, height_);

    // The field's own spacings and values are not read any more: from here on no subclass can see anything.
    DenseMarch2D marched(distances, states.data(), width_, height_, getXSpace(), getYSpace());
    MarchQueue queue;
    march(marched, front.outside, kOutside, queue);
    march(marched, front.inside, kInside, queue);
    for (std::size_t i = 0; i < states.size(); ++i) values_[i] = states[i] * distances[i];
}
