#include "quorbin3d/mesh.h"

#include <stdexcept>

#include "quorbin3d/extraction/mesh_band.h"

namespace quorbin {

namespace {

void scale(Mesh& mesh, const LevelSet3D& field) {
    const double hx = field.getXSpace(), hy = field.getYSpace(), hz = field.getZSpace();
    for (brin::Vec3<double>& v : mesh.vertices) v = {v.x * hx, v.y * hy, v.z * hz};
}

}  // namespace

std::optional<Mesh> mesh(const LevelSet3D& field, const MeshOptions& options, const Progress& progress) {
    if (field.getWidth() < 0)
        throw std::invalid_argument("this level set has no extent; give a band as a FastLevelSet3D");
    Mesh mesh;
    const bool isDone =
        options.capped ? getTrianglesCapped(field, mesh.vertices, mesh.normals, mesh.triangles, progress)
                       : getTrianglesUnique(field, mesh.vertices, mesh.normals, mesh.triangles, progress);
    if (!isDone) return std::nullopt;
    scale(mesh, field);
    return mesh;
}

std::optional<Mesh> mesh(const FastLevelSet3D& band, const Progress& progress) {
    return lset::detail::unlessEnded(progress, [&](const lset::detail::Stretch& whole) {
        Mesh mesh;
        lset::detail::meshOfBand(band, {mesh.vertices, mesh.normals, mesh.triangles}, whole);
        scale(mesh, band);
        return mesh;
    });
}

Mesh mesh(const LevelSet3D& field, const MeshOptions& options) { return *mesh(field, options, Progress()); }
Mesh mesh(const FastLevelSet3D& band) { return *mesh(band, Progress()); }

}  // namespace quorbin
