#pragma once

#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "fast_level_set_3d.h"
#include "gpoint3.h"
#include "level_set_3d.h"

/// The triangles of LevelSet3D::getTriangles in the same order, with one vertex for each grid edge that the surface crosses, so
/// that the mesh is closed wherever the surface does not leave the grid. Grid-index units; all three vectors are emptied first.
/// Slivers of no area remain where values are exactly 0. A field without extent has none; a band has an overload of its own.
QUORBIN_EXPORT void getTrianglesUnique(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// The same of a band: the triangles of its getTriangles in their order.
QUORBIN_EXPORT void getTrianglesUnique(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// The same of a dense grid, closed along the faces of the grid too: what is inside ends there, and the faces get triangles whose normals are
/// theirs. Triangles that lie in no cell of the grid come in the order in which a layer of cells around it would be visited.
QUORBIN_EXPORT void getTrianglesCapped(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// A band has no faces to close it at.
void getTrianglesCapped(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                        std::vector<brin::Vec3<double>>& normals, std::vector<gpoint3>& triangles) = delete;

/// Area of a mesh in world units, given the spacings; in grid-index units by default.
QUORBIN_EXPORT double surfaceArea(const std::vector<brin::Vec3<double>>& vertices,
                                  const std::vector<gpoint3>& triangles, double xSpace = 1.0,
                                  double ySpace = 1.0, double zSpace = 1.0);

/// Volume that a closed mesh encloses, positive where its triangles are counterclockwise seen from outside; in world units,
/// given the spacings.
QUORBIN_EXPORT double enclosedVolume(const std::vector<brin::Vec3<double>>& vertices,
                                     const std::vector<gpoint3>& triangles, double xSpace = 1.0,
                                     double ySpace = 1.0, double zSpace = 1.0);
