#pragma once

#include <optional>
#include <vector>

#include "../brin/vec.h"
#include "../progress.h"
#include "../quorbin_export.h"
#include "fast_level_set_3d.h"
#include "gpoint3.h"
#include "level_set_3d.h"

namespace quorbin {

/// A surface of triangles that share vertices.
struct Mesh {
    std::vector<brin::Vec3<double>> vertices;
    /// One for each vertex: outwards, of length 1, or 0 where there is no gradient.
    std::vector<brin::Vec3<double>> normals;
    /// Indices of vertices, counterclockwise seen from outside.
    std::vector<gpoint3> triangles;
};

/// Options of mesh.
struct MeshOptions {
    /// Whether the surface is closed where the inside reaches the faces of the grid, by triangles on them.
    bool capped = false;
};

/// The zero surface of a level set by marching cubes (Lorensen and Cline 1987), in world units (grid index
/// times spacing): the mesh of getTrianglesUnique or, if capped, of getTrianglesCapped. It is closed except
/// where the surface leaves the grid. Not-a-number is outside; beside a value that is not finite the vertex
/// is at the finite sample, without a normal. Throws std::invalid_argument for a band that is not given as
/// one (there is an overload for it), and std::bad_alloc. About 1 ns a cell and 0.1 µs a triangle.
QUORBIN_EXPORT Mesh mesh(const LevelSet3D& field, const MeshOptions& options = {});

/// The same, which progress may end: then there is none.
QUORBIN_EXPORT std::optional<Mesh> mesh(const LevelSet3D& field, const MeshOptions& options,
                                        const Progress& progress);

/// The same for a band, from the cells whose eight corners are stored.
QUORBIN_EXPORT Mesh mesh(const FastLevelSet3D& band);
QUORBIN_EXPORT std::optional<Mesh> mesh(const FastLevelSet3D& band, const Progress& progress);
/// Deleted: a band has no faces at which a mesh could be closed.
Mesh mesh(const FastLevelSet3D& band, const MeshOptions& options) = delete;
std::optional<Mesh> mesh(const FastLevelSet3D& band, const MeshOptions& options,
                         const Progress& progress) = delete;

/// Area of a mesh, the sum of those of its triangles.
QUORBIN_EXPORT double surfaceArea(const Mesh& mesh);

/// Volume that a closed mesh encloses, positive if its triangles are counterclockwise seen from outside.
QUORBIN_EXPORT double enclosedVolume(const Mesh& mesh);

/// The triangles of LevelSet3D::getTriangles in the same order and in grid-index units, but with one vertex
/// for each grid edge that the surface crosses, so that the mesh is closed except where the surface leaves
/// the grid. Triangles without area remain where values are exactly 0. A field without extent has no
/// triangles; for a band there is an overload of its own. All three vectors are emptied first.
QUORBIN_EXPORT void getTrianglesUnique(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// The same for a band: the triangles of FastLevelSet3D::getTriangles in the same order.
QUORBIN_EXPORT void getTrianglesUnique(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// Like getTrianglesUnique of a level set with extent, but closed along the faces of the grid too: where the
/// inside reaches a face, the face gets triangles, and the vertices that this adds have its normal. Triangles
/// come in the order of the cells of a grid that has one layer of points more all around, all of them
/// outside.
QUORBIN_EXPORT void getTrianglesCapped(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles);

/// Both, which progress may end: then false, and the vectors stay.
QUORBIN_EXPORT bool getTrianglesUnique(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles, const Progress& progress);
QUORBIN_EXPORT bool getTrianglesCapped(const LevelSet3D& field, std::vector<brin::Vec3<double>>& vertices,
                                       std::vector<brin::Vec3<double>>& normals,
                                       std::vector<gpoint3>& triangles, const Progress& progress);

/// Deleted: a band has no faces at which a mesh could be closed.
void getTrianglesCapped(const FastLevelSet3D& band, std::vector<brin::Vec3<double>>& vertices,
                        std::vector<brin::Vec3<double>>& normals, std::vector<gpoint3>& triangles) = delete;

/// Area and volume of a mesh whose vertices are in grid-index units: in grid units or, if the spacings are
/// given, in world units.
QUORBIN_EXPORT double surfaceArea(const std::vector<brin::Vec3<double>>& vertices,
                                  const std::vector<gpoint3>& triangles, double xSpace = 1.0,
                                  double ySpace = 1.0, double zSpace = 1.0);
QUORBIN_EXPORT double enclosedVolume(const std::vector<brin::Vec3<double>>& vertices,
                                     const std::vector<gpoint3>& triangles, double xSpace = 1.0,
                                     double ySpace = 1.0, double zSpace = 1.0);

}  // namespace quorbin
