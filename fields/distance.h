#pragma once

#include <quorbin.h>

#include "progress.h"

namespace quorbin::fields {

/// Makes a field a signed distance in units of its spacing; the sign stays.
using DistanceMethod = void (*)(FullLevelSet2D& field, const ProgressFunction& progress);

/// By fast marching: first order, any spacings.
void distanceByMarching(FullLevelSet2D& field, const ProgressFunction& progress = {});
void distanceInVolume(FullLevelSet3D& field, const ProgressFunction& progress = {});

/// By the segments of the contour, spread by sweeps. The outline stays where it is to second order, which
/// marching does not give. The spacings must be equal; points further away than the segments are spread are
/// marched.
void distanceBySegments(FullLevelSet2D& field, const ProgressFunction& progress = {});

/// By the nearest of all segments: exact for the polygonal contour. As above otherwise.
void distanceByBruteForce(FullLevelSet2D& field, const ProgressFunction& progress = {});

bool hasEqualSpacings(const FullLevelSet2D& field);

}  // namespace quorbin::fields
