#pragma once

#include "common/watch.h"
#include "quorbin3d/extraction/indexed_mesh.h"
#include "quorbin3d/fast_level_set_3d.h"

namespace lset::detail {

/// The triangles of a band with shared vertices (see quorbin::getTrianglesUnique).
void meshOfBand(const FastLevelSet3D& band, IndexedMesh mesh, const Stretch& stretch);

}  // namespace lset::detail
