#include "compare.h"

#include <cmath>
#include <vector>

#include "band/extraction/compare_band.h"
#include "common/extraction/compare_dense.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/mesh.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

namespace {

/// The vertices of meshes; each has a third of the area of its triangles.
class Surfaces {
 public:
    static double contentOf(const FullLevelSet3D& field, const Stretch& stretch) {
        MeshOptions options;
        options.capped = true;
        return enclosedVolume(toTheEnd(mesh(field, options, stretch.function())));
    }
    static double contentOf(const FastLevelSet3D& band, const Stretch& stretch) {
        return enclosedVolume(toTheEnd(mesh(band, stretch.function())));
    }

    static std::vector<WeightedPoint<3>> pointsOf(const FullLevelSet3D& field, const Stretch& stretch) {
        return verticesOf(toTheEnd(mesh(field, {}, stretch.part(0, 0.8).function())), stretch.part(0.8, 1));
    }
    static std::vector<WeightedPoint<3>> pointsOf(const FastLevelSet3D& band, const Stretch& stretch) {
        return verticesOf(toTheEnd(mesh(band, stretch.part(0, 0.8).function())), stretch.part(0.8, 1));
    }

 private:
    static std::vector<WeightedPoint<3>> verticesOf(const Mesh& surface, Stretch stretch) {
        stretch.expect(surface.triangles.size());
        std::vector<WeightedPoint<3>> points;
        for (const auto& v : surface.vertices) points.push_back({{v.x, v.y, v.z}, 0});
        for (const gpoint3& t : surface.triangles) {
            stretch.step();
            const auto at = [&](int i) { return surface.vertices[static_cast<std::size_t>(i)]; };
            const auto normal = cross(at(t.second) - at(t.first), at(t.third) - at(t.first));
            for (const int i : {t.first, t.second, t.third})
                points[static_cast<std::size_t>(i)].weight += std::sqrt(dot(normal, normal)) / 6;
        }
        return points;
    }
};

}  // namespace

std::optional<Comparison> compare(const FullLevelSet3D& a, const FullLevelSet3D& b,
                                  const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return compareGrids<Surfaces>(a, b, whole); });
}
std::optional<Comparison> compare(const FastLevelSet3D& a, const FastLevelSet3D& b,
                                  const Progress& progress) {
    return unlessEnded(progress, [&](const Stretch& whole) { return compareBands<Surfaces>(a, b, whole); });
}
Comparison compare(const FullLevelSet3D& a, const FullLevelSet3D& b) { return *compare(a, b, Progress()); }
Comparison compare(const FastLevelSet3D& a, const FastLevelSet3D& b) { return *compare(a, b, Progress()); }

}  // namespace quorbin
