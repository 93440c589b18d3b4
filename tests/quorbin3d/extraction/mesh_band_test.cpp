#include <algorithm>
#include <map>

#include "quorbin3d/band_support.h"

namespace {

struct Soup {
    std::vector<brin::Vec3<double>> vertices, normals;
    std::vector<gpoint3> triangles;

    bool operator==(const Soup& other) const {
        return bits(vertices) == bits(other.vertices) && bits(normals) == bits(other.normals) &&
               triangles == other.triangles;
    }

    /// The corners of the triangles, without their order.
    std::vector<std::array<double, 9>> sorted() const {
        std::vector<std::array<double, 9>> all;
        for (const gpoint3& t : triangles) {
            std::array<double, 9> corners;
            std::size_t k = 0;
            for (const int i : {t.first, t.second, t.third})
                for (int axis = 0; axis < 3; ++axis)
                    corners[k++] = vertices[static_cast<std::size_t>(i)][axis];
            all.push_back(corners);
        }
        std::sort(all.begin(), all.end());
        return all;
    }
};

TEST(VolumeBandMesh, IsTheSameOnBothPathsAndSharesVerticesByEdge) {
    onVolumeBandPairs([](FastLevelSet3D& band, SlowBand3D& slow) {
        Soup one, other, shared, slowShared;
        band.getTriangles(one.vertices, one.normals, one.triangles);
        slow.getTriangles(other.vertices, other.normals, other.triangles);
        ASSERT_TRUE(one == other);
        quorbin::getTrianglesUnique(band, shared.vertices, shared.normals, shared.triangles);
        quorbin::getTrianglesUnique(slow, slowShared.vertices, slowShared.normals, slowShared.triangles);
        ASSERT_TRUE(shared == slowShared);
        ASSERT_EQ(shared.triangles.size(), one.triangles.size());
        for (std::size_t t = 0; t < one.triangles.size(); ++t) {
            const int here[3] = {one.triangles[t].first, one.triangles[t].second, one.triangles[t].third};
            const int there[3] = {shared.triangles[t].first, shared.triangles[t].second,
                                  shared.triangles[t].third};
            for (int k = 0; k < 3; ++k)
                for (int axis = 0; axis < 3; ++axis)
                    ASSERT_NEAR(one.vertices[static_cast<std::size_t>(here[k])][axis],
                                shared.vertices[static_cast<std::size_t>(there[k])][axis], 1e-12);
        }
    });
}

TEST(VolumeBandMesh, IsThatOfTheDenseGridAndClosed) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume&) {
        FastLevelSet3D band;
        assignBandOf(band, dense, false);
        Soup ofBand, ofGrid;
        band.getTriangles(ofBand.vertices, ofBand.normals, ofBand.triangles);
        dense.getTriangles(ofGrid.vertices, ofGrid.normals, ofGrid.triangles);
        ASSERT_EQ(ofBand.sorted(), ofGrid.sorted());
    });
    FullLevelSet3D ball;
    fill(ball, {30, 28, 26},
         [](int x, int y, int z) { return std::hypot(x - 14.2, y - 13.6, z - 12.4) - 9; });
    FastLevelSet3D band;
    assignBandOf(band, ball, true);
    Soup mesh;
    quorbin::getTrianglesUnique(band, mesh.vertices, mesh.normals, mesh.triangles);
    std::map<std::pair<int, int>, int> edges;
    for (const gpoint3& t : mesh.triangles) {
        ++edges[{t.first, t.second}];
        ++edges[{t.second, t.third}];
        ++edges[{t.third, t.first}];
    }
    for (const auto& [edge, count] : edges) {
        ASSERT_EQ(count, 1);
        ASSERT_EQ(edges.count({edge.second, edge.first}), 1U);
    }
    EXPECT_NEAR(quorbin::enclosedVolume(mesh.vertices, mesh.triangles), 4 / 3.0 * M_PI * 729, 40);
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const auto outward = mesh.vertices[i] - brin::Vec3<double>(14.2, 13.6, 12.4);
        EXPECT_GT(dot(mesh.normals[i], outward), 8.5);
    }
}

}  // namespace
