#pragma once

#include "quorbin3d/level_set_3d.h"

namespace lset::detail {

/// Distance of a point from the interface by the crossings of its six grid edges, from its value and those of its neighbours
/// by direction; one that is missing is equal to the point's own. Crossings on three axes give the distance to the plane
/// through them, and rule out the others.
double firstDistance(double here, const double (&beside)[6], const double (&h)[3]);

}  // namespace lset::detail
