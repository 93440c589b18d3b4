#pragma once

#include <vector>

#include "../brin/vec.h"
#include "../quorbin_export.h"
#include "fast_level_set_3d.h"
#include "gpoint3.h"
#include "level_set_3d.h"

namespace quorbin {

/// A surface of triangles that share their vertices.
struct Mesh {
    std::vector<brin::Vec3<double>> vertices;
    std::vector<brin::Vec3<double>>
        normals;                     ///< one a vertex: of unit length, outwards; 0 where there is no gradient
    std::vector<gpoint3> triangles;  ///< indices of vertices, counterclockwise seen from outside
};

struct MeshOptions {
    /// Closes the surface along the faces of the grid: what is inside ends there, and the faces get
    /// triangles.
    bool capped = false;
};

/// The zero surface of a level set in world units (grid index times spacing), by marching cubes (Lorensen and
/// Cline 1987); closed wherever it does not leave the grid. The triangles and vertices of getTrianglesUnique
/// or getTrianglesCapped. A field without extent has none; a band has an overload of its own. Throws
/// std::bad_alloc. About 1 ns a cell and 0.1 µs a triangle.
QUORBIN_EXPORT Mesh mesh(const LevelSet3D& field, const MeshOptions& options = {});

/// The same of a band, of the cells whose eight corners are stored. A band has no faces to close it at.
QUORBIN_EXPORT Mesh mesh(const FastLevelSet3D& band);
Mesh mesh(const FastLevelSet3D& band, const MeshOptions& options) = delete;

/// Area of a mesh.
QUORBIN_EXPORT double surfaceArea(const Mesh& mesh);

/// Volume that a closed mesh encloses, positive where its triangles are counterclockwise seen from outside.
QUORBIN_EXPORT double enclosedVolume(const Mesh& mesh);

/// The triangles of LevelSet3D::getTriangles in the same order, with one vertex for each grid edge that the
/// surface crosses, so that the mesh is closed wherever the surface does not leave the grid. Grid-index
/// units; all three vectors are emptied first. Slivers of no area remain where values are exactly 0. A field
/// without extent has none; a band has an overload of its own.
QUORBIN_EXPORT void getTrianglesUnique(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// The same of a band: the triangles of its getTriangles in their order.
QUORBIN_EXPORT void getTrianglesUnique(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// The same of a dense grid, closed along the faces of the grid too: what is inside ends there, and the faces
/// get triangles whose normals are theirs. Triangles that lie in no cell of the grid come in the order in
/// which a layer of cells around it would be visited.
QUORBIN_EXPORT void getTrianglesCapped(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// A band has no faces to close it at.
void getTrianglesCapped(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                        std::vector<brin::Vec3<double>>& normals, std::vector<gpoint3>& triangles) = delete;

/// Area and volume of vertices and triangles in grid-index units: in the same units, or in world units, given
/// the spacings.
QUORBIN_EXPORT double surfaceArea(const std::vector<brin::Vec3<double>>& vertices,
                                  const std::vector<gpoint3>& triangles, double xSpace = 1.0,
                                  double ySpace = 1.0, double zSpace = 1.0);
QUORBIN_EXPORT double enclosedVolume(const std::vector<brin::Vec3<double>>& vertices,
                                     const std::vector<gpoint3>& triangles, double xSpace = 1.0,
                                     double ySpace = 1.0, double zSpace = 1.0);

}  // namespace quorbin
