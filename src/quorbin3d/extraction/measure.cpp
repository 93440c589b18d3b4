#include "measure.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "quorbin3d/extraction/mean_curvature.h"
#include "quorbin3d/full_level_set_3d.h"
#include "quorbin3d/mesh.h"

namespace quorbin {

namespace {

using Vec3 = brin::Vec3<double>;

Figures3D figuresOf(const Mesh& mesh, const Vec3& h) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    const Vec3 none(kNone, kNone, kNone);
    Figures3D figures = {0, 0, none, none, none, 0};
    if (mesh.triangles.empty()) return figures;
    // Places are from one vertex, so that small figures far out lose no digits.
    const Vec3 origin = mesh.vertices.front();
    figures.lowest = figures.highest = origin;
    for (const Vec3& v : mesh.vertices)
        for (int axis = 0; axis < 3; ++axis) {
            figures.lowest[axis] = std::min(figures.lowest[axis], v[axis]);
            figures.highest[axis] = std::max(figures.highest[axis], v[axis]);
        }
    Vec3 moment;
    for (const gpoint3& t : mesh.triangles) {
        const auto at = [&](int i) { return mesh.vertices[static_cast<std::size_t>(i)] - origin; };
        const Vec3 a = at(t.first), b = at(t.second), c = at(t.third);
        const double sixfold = dot(a, cross(b, c));
        figures.volume += sixfold / 6;
        moment += (a + b + c) * (sixfold / 24);
        const Vec3 normal = cross(b - a, c - a);
        figures.surfaceArea += std::sqrt(dot(normal, normal)) / 2;
    }
    figures.centroid = origin + moment / figures.volume;
    figures.totalMeanCurvature = lset::detail::totalMeanCurvature(mesh, h);
    return figures;
}

Vec3 spacings(const LevelSet3D& field) { return {field.getXSpace(), field.getYSpace(), field.getZSpace()}; }

}  // namespace

Figures3D measure(const FullLevelSet3D& field) {
    MeshOptions options;
    options.capped = true;
    return figuresOf(mesh(field, options), spacings(field));
}
Figures3D measure(const FastLevelSet3D& band) { return figuresOf(mesh(band), spacings(band)); }

}  // namespace quorbin
