#include "measure.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/watch.h"
#include "quorbin3d/extraction/mean_curvature.h"
#include "quorbin3d/full_level_set_3d.h"
#include "quorbin3d/mesh.h"

namespace quorbin {

namespace {

using lset::detail::Stretch;
using Vec3 = brin::Vec3<double>;

Figures3D figuresOf(const Mesh& mesh, const Vec3& h, const Stretch& stretch) {
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
    Stretch sums = stretch.part(0, 0.1);
    sums.expect(mesh.triangles.size());
    for (const gpoint3& t : mesh.triangles) {
        sums.step();
        const auto at = [&](int i) { return mesh.vertices[static_cast<std::size_t>(i)] - origin; };
        const Vec3 a = at(t.first), b = at(t.second), c = at(t.third);
        const double sixfold = dot(a, cross(b, c));
        figures.volume += sixfold / 6;
        moment += (a + b + c) * (sixfold / 24);
        const Vec3 normal = cross(b - a, c - a);
        figures.surfaceArea += std::sqrt(dot(normal, normal)) / 2;
    }
    figures.centroid = origin + moment / figures.volume;
    figures.totalMeanCurvature = lset::detail::totalMeanCurvature(mesh, h, stretch.part(0.1, 1));
    return figures;
}

Vec3 spacings(const LevelSet3D& field) { return {field.getXSpace(), field.getYSpace(), field.getZSpace()}; }

template <class MakeMesh>
std::optional<Figures3D> measured(const LevelSet3D& field, const Progress& progress,
                                  const MakeMesh& makeMesh) {
    return lset::detail::unlessEnded(progress, [&](const Stretch& whole) {
        return figuresOf(lset::detail::toTheEnd(makeMesh(whole.part(0, 0.4).function())), spacings(field),
                         whole.part(0.4, 1));
    });
}

}  // namespace

std::optional<Figures3D> measure(const FullLevelSet3D& field, const Progress& progress) {
    return measured(field, progress, [&](const Progress& part) {
        MeshOptions options;
        options.capped = true;
        return mesh(field, options, part);
    });
}
std::optional<Figures3D> measure(const FastLevelSet3D& band, const Progress& progress) {
    return measured(band, progress, [&](const Progress& part) { return mesh(band, part); });
}
Figures3D measure(const FullLevelSet3D& field) { return *measure(field, Progress()); }
Figures3D measure(const FastLevelSet3D& band) { return *measure(band, Progress()); }

}  // namespace quorbin
