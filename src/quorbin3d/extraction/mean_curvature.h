#pragma once

#include "common/watch.h"
#include "quorbin3d/mesh.h"

namespace lset::detail {

/// Integral of the mean curvature over a closed mesh of marching cubes with these spacings: over all edges,
/// half the length times the angle by which the surface turns there, positive where it is convex. By
/// Steiner's formula the area grows at twice this rate if the surface is moved outward. Vertices closer
/// than a millionth of a spacing count as one, so that triangles without area, whose normals are noise,
/// drop out.
double totalMeanCurvature(const quorbin::Mesh& mesh, const brin::Vec3<double>& h, const Stretch& stretch);

}  // namespace lset::detail
