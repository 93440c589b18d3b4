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
struct Surfaces {
    static double contentOf(const FullLevelSet3D& field) {
        MeshOptions options;
        options.capped = true;
        return enclosedVolume(mesh(field, options));
    }
    static double contentOf(const FastLevelSet3D& band) { return enclosedVolume(mesh(band)); }

    template <class LevelSet>
    static std::vector<WeightedPoint<3>> pointsOf(const LevelSet& levelSet) {
        const Mesh surface = mesh(levelSet);
        std::vector<WeightedPoint<3>> points;
        for (const auto& v : surface.vertices) points.push_back({{v.x, v.y, v.z}, 0});
        for (const gpoint3& t : surface.triangles) {
            const auto at = [&](int i) { return surface.vertices[static_cast<std::size_t>(i)]; };
            const auto normal = cross(at(t.second) - at(t.first), at(t.third) - at(t.first));
            for (const int i : {t.first, t.second, t.third})
                points[static_cast<std::size_t>(i)].weight += std::sqrt(dot(normal, normal)) / 6;
        }
        return points;
    }
};

}  // namespace

Comparison compare(const FullLevelSet3D& a, const FullLevelSet3D& b) { return compareGrids<Surfaces>(a, b); }
Comparison compare(const FastLevelSet3D& a, const FastLevelSet3D& b) { return compareBands<Surfaces>(a, b); }

}  // namespace quorbin
