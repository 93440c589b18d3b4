#include "quorbin3d/mesh.h"

#include <stdexcept>

namespace quorbin {

namespace {

void scale(Mesh& mesh, const LevelSet3D& field) {
    const double hx = field.getXSpace(), hy = field.getYSpace(), hz = field.getZSpace();
    for (brin::Vec3<double>& v : mesh.vertices) v = {v.x * hx, v.y * hy, v.z * hz};
}

}  // namespace

Mesh mesh(const LevelSet3D& field, const MeshOptions& options) {
    if (field.getWidth() < 0)
        throw std::invalid_argument("this level set has no extent; give a band as a FastLevelSet3D");
    Mesh mesh;
    if (options.capped)
        getTrianglesCapped(field, mesh.vertices, mesh.normals, mesh.triangles);
    else
        getTrianglesUnique(field, mesh.vertices, mesh.normals, mesh.triangles);
    scale(mesh, field);
    return mesh;
}

std::optional<Mesh> mesh(const LevelSet3D& field, const MeshOptions& options, const Progress& progress) {
    Mesh mesh;
    const bool isDone =
        options.capped ? getTrianglesCapped(field, mesh.vertices, mesh.normals, mesh.triangles, progress)
                       : getTrianglesUnique(field, mesh.vertices, mesh.normals, mesh.triangles, progress);
    if (!isDone) return std::nullopt;
    scale(mesh, field);
    return mesh;
}

Mesh mesh(const FastLevelSet3D& band) {
    Mesh mesh;
    getTrianglesUnique(band, mesh.vertices, mesh.normals, mesh.triangles);
    scale(mesh, band);
    return mesh;
}

}  // namespace quorbin
