#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "fields/from_samples.h"
#include "fields/label_mesh.h"

namespace {

using quorbin::Mesh;

constexpr int kSize = 7;

/// A volume of random labels 0 ... count - 1, in lumps or each for itself, so that three and more meet in
/// every way.
quorbin::io::Image randomLabels(int count, int lump, unsigned seed) {
    quorbin::io::Image volume;
    volume.isVolume = true;
    volume.width = volume.height = volume.depth = kSize;
    std::mt19937 random(seed);
    std::map<std::array<int, 3>, double> labels;
    for (int z = 0; z < kSize; ++z)
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x) {
                const auto [at, isNew] = labels.try_emplace({x / lump, y / lump, z / lump}, 0);
                if (isNew) at->second = static_cast<double>(random() % static_cast<unsigned>(count));
                volume.samples.push_back(at->second);
            }
    return volume;
}

/// The surfaces of all labels, the background's too.
std::map<double, Mesh> meshesOf(quorbin::io::Image volume, bool capped) {
    std::map<double, Mesh> meshes;
    for (const double label : std::set<double>(volume.samples.begin(), volume.samples.end())) {
        quorbin::fields::FieldOptions options;
        options.label = label;
        FullLevelSet3D field;
        std::string note;
        makeField(volume, options, field, note);
        meshes[label] = quorbin::fields::meshOfLabel(volume.samples, field, label, capped);
    }
    return meshes;
}

/// A triangle by where its corners are, from the least one on.
using Triangle = std::array<std::array<double, 3>, 3>;

std::vector<Triangle> trianglesOf(const Mesh& mesh, bool turned) {
    std::vector<Triangle> triangles;
    for (const gpoint3& t : mesh.triangles) {
        Triangle triangle;
        const int corners[3] = {t.first, turned ? t.third : t.second, turned ? t.second : t.third};
        for (std::size_t k = 0; k < 3; ++k) {
            const auto& v = mesh.vertices[static_cast<std::size_t>(corners[k])];
            triangle[k] = {v.x, v.y, v.z};
        }
        std::rotate(triangle.begin(), std::min_element(triangle.begin(), triangle.end()), triangle.end());
        triangles.push_back(triangle);
    }
    std::sort(triangles.begin(), triangles.end());
    return triangles;
}

TEST(LabelMesh, FillsTheVolumeExactlyOnceTogether) {
    for (const int lump : {1, 2, 3})
        for (int count = 2; count <= 6; ++count) {
            double together = 0;
            for (const auto& [label, mesh] : meshesOf(randomLabels(count, lump, 7), true)) {
                const double volume = quorbin::enclosedVolume(mesh);
                EXPECT_GT(volume, 0) << label;
                together += volume;
            }
            EXPECT_NEAR(together, (kSize - 1) * (kSize - 1) * (kSize - 1), 1e-9)
                << count << " labels, " << lump;
        }
}

TEST(LabelMesh, HasEachTriangleTwiceOncePerSide) {
    for (const int lump : {1, 2})
        for (int count = 2; count <= 6; ++count) {
            // Without caps all of a surface is shared by two labels.
            std::vector<Triangle> outwards, inwards;
            for (const auto& [label, mesh] : meshesOf(randomLabels(count, lump, 5), false)) {
                const std::vector<Triangle> one = trianglesOf(mesh, false), other = trianglesOf(mesh, true);
                outwards.insert(outwards.end(), one.begin(), one.end());
                inwards.insert(inwards.end(), other.begin(), other.end());
            }
            std::sort(outwards.begin(), outwards.end());
            std::sort(inwards.begin(), inwards.end());
            EXPECT_FALSE(outwards.empty());
            EXPECT_TRUE(outwards == inwards) << count << " labels";
        }
}

TEST(LabelMesh, IsClosedAndOfOneLabelAloneThatOfMarchingCubes) {
    for (int count = 1; count <= 6; ++count)
        for (const auto& [label, mesh] : meshesOf(randomLabels(count, 1, 3), true)) {
            std::multiset<std::pair<int, int>> edges, opposite;
            for (const gpoint3& t : mesh.triangles)
                for (const auto& [from, to] :
                     {std::pair{t.first, t.second}, {t.second, t.third}, {t.third, t.first}}) {
                    edges.emplace(from, to);
                    opposite.emplace(to, from);
                }
            EXPECT_TRUE(edges == opposite) << count << " labels, " << label;
        }
    // Of two labels the lesser one has the very surface that its field has.
    quorbin::io::Image volume = randomLabels(2, 2, 11);
    quorbin::fields::FieldOptions options;
    options.label = 0;
    FullLevelSet3D field;
    std::string note;
    makeField(volume, options, field, note);
    const Mesh ours = quorbin::fields::meshOfLabel(volume.samples, field, 0, false);
    const Mesh known = quorbin::mesh(field);
    EXPECT_TRUE(trianglesOf(ours, false) == trianglesOf(known, false));
    ASSERT_EQ(ours.normals.size(), known.normals.size());
    for (std::size_t i = 0; i < known.normals.size(); ++i)
        for (const auto part : {&brin::Vec3<double>::x, &brin::Vec3<double>::y, &brin::Vec3<double>::z})
            EXPECT_NEAR(ours.normals[i].*part, known.normals[i].*part, 1e-12);
}

}  // namespace
