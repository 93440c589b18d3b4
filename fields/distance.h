#pragma once

#include <quorbin.h>

namespace quorbin::fields {

/// Makes a field a signed distance in units of its spacing; the sign stays. Progress may end it: then false,
/// and the field is as it was. Infinite values and not-a-number, which is outside, count by their sides.
template <class Grid>
using DistanceMethod = bool (*)(Grid& field, const Progress& progress);

/// By projection to the outline and from its nearest foot: see quorbin::reinitialize. Any spacings.
bool distanceByProjection(FullLevelSet2D& field, const Progress& progress = {});
bool distanceByProjection(FullLevelSet3D& field, const Progress& progress = {});

/// By fast marching: first order, any spacings.
bool distanceByMarching(FullLevelSet2D& field, const Progress& progress = {});
bool distanceByMarching(FullLevelSet3D& field, const Progress& progress = {});

/// By the segments of the contour, spread by sweeps. The outline stays where it is to second order, which
/// marching does not give. The spacings must be equal; points further away than the segments are spread are
/// marched.
bool distanceBySegments(FullLevelSet2D& field, const Progress& progress = {});

/// By the nearest of all segments: exact for the polygonal contour. As above otherwise.
bool distanceByBruteForce(FullLevelSet2D& field, const Progress& progress = {});

bool hasEqualSpacings(const FullLevelSet2D& field);

}  // namespace quorbin::fields
