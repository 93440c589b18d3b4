#pragma once

#include "quorbin3d/differences/readers.h"

namespace lset::detail {

/// Distance of a point from the interface by the crossings of its six grid edges, from its value and those of
/// its neighbours by direction; one that is missing is equal to the point's own. Crossings on three axes give
/// the distance to the plane through them, and rule out the others.
double firstDistance(double here, const double (&beside)[6], const double (&h)[3]);

/// The same for a point of a dense grid, read through a reader.
double firstDistanceOf(const VirtualReader3D& field, int x, int y, int z);
double firstDistanceOf(const DenseReader3D& field, int x, int y, int z);

}  // namespace lset::detail
