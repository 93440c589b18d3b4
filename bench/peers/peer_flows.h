#pragma once

#include "accuracy/flows.h"

/// The flows that all systems are measured on: the same inputs and the same measures as in bench/accuracy.
template <class Grid>
void measurePeer(const accuracy::DistanceMethods<Grid>& distances,
                 const accuracy::CurvatureMethods<Grid>& motions) {
    constexpr bool isFlat = std::is_same_v<Grid, FullLevelSet2D>;
    const int small = isFlat ? 128 : 64;
    accuracy::drift(distances, small);
    for (const int n : {small, isFlat ? 512 : 128}) {
        accuracy::circleDistances(distances, n);
        accuracy::ellipsoidDistances(distances, n);
    }
    if constexpr (!isFlat) accuracy::thinRods(distances, 48);
    accuracy::roundCurvature(motions, small);
}
