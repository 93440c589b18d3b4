#pragma once

#include <optional>
#include <vector>

#include <quorbin.h>

namespace quorbin::fields {

/// The surface of a label in a volume of them, in grid-index units, closed at the faces of the grid if it is
/// capped. field is the label's own, as makeField gives it, for sizes and normals. Vertices lie half way
/// between samples, and in the middle of faces and cells where more than two labels meet. The surfaces of all
/// labels fit together without gaps or overlaps: what two have in common are the same triangles, turned over.
Mesh meshOfLabel(const std::vector<double>& labels, const FullLevelSet3D& field, double label, bool capped);

/// The same, which progress, told of layers of cells, may end: then there is none.
std::optional<Mesh> meshOfLabel(const std::vector<double>& labels, const FullLevelSet3D& field, double label,
                                bool capped, const Progress& progress);

}  // namespace quorbin::fields
