#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"

namespace {

using Vectors = std::vector<brin::Vec3<double>>;

constexpr int kCorner[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                               {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

/// Corners of the six faces, around each.
constexpr int kFaces[6][4] = {{0, 1, 2, 3}, {4, 5, 6, 7}, {0, 1, 5, 4},
                              {3, 2, 6, 7}, {0, 3, 7, 4}, {1, 2, 6, 5}};

int edgeBetween(int a, int b) {
    for (int e = 0; e < 12; ++e) {
        const int p = int{MarchingCubes::edges[e][0]}, q = int{MarchingCubes::edges[e][1]};
        if ((p == a && q == b) || (p == b && q == a)) return e;
    }
    return -1;
}

using EdgePairs = std::multiset<std::pair<int, int>>;

/// The lines in which the surface of a case meets the faces: between two crossings, or around each inside
/// corner where the corners of a face alternate.
EdgePairs linesOnFaces(int cell) {
    using namespace MarchingCubes;  // a namespace, not a class
    EdgePairs lines;
    const auto inside = [&](int c) { return (cell >> c & 1) != 0; };
    for (const auto& face : kFaces) {
        std::vector<int> crossed;
        for (int k = 0; k < 4; ++k)
            if (inside(face[k]) != inside(face[(k + 1) % 4]))
                crossed.push_back(edgeBetween(face[k], face[(k + 1) % 4]));
        if (crossed.size() == 2) lines.insert(std::minmax(crossed[0], crossed[1]));
        if (crossed.size() == 4)
            for (int k = 0; k < 4; ++k)
                if (inside(face[k]))
                    lines.insert(std::minmax(edgeBetween(face[(k + 3) % 4], face[k]),
                                             edgeBetween(face[k], face[(k + 1) % 4])));
    }
    return lines;
}

TEST(MarchingCubesTables, MeetTheFacesWhereTheRuleSaysAndHave820Triangles) {
    int total = 0;
    for (int cell = 0; cell < 256; ++cell) {
        const int count = int{MarchingCubes::lut_sizes[cell]};
        total += count;
        std::map<std::pair<int, int>, int> sides;  // directed, +1 and -1 cancel within the case
        for (int t = 0; t < count; ++t)
            for (int k = 0; k < 3; ++k) {
                const int a = int{MarchingCubes::lut[cell][3 * t + k]},
                          b = int{MarchingCubes::lut[cell][3 * t + (k + 1) % 3]};
                ASSERT_TRUE(a >= 0 && a < 12 && a != b);
                ++sides[{a, b}];
                --sides[{b, a}];
            }
        EdgePairs boundary;
        for (const auto& [side, times] : sides) {
            ASSERT_LE(times, 1);
            if (times == 1) boundary.insert(std::minmax(side.first, side.second));
        }
        EXPECT_EQ(boundary, linesOnFaces(cell)) << cell;
        for (int rest = 3 * count; rest < 15; ++rest) EXPECT_EQ(MarchingCubes::lut[cell][rest], 0);
        // The first triangle's right-hand normal goes from inside to outside.
        for (int t = 0; t < count; ++t) {
            double point[3][3], outward[3] = {};
            for (int k = 0; k < 3; ++k) {
                const signed char* ends = MarchingCubes::edges[MarchingCubes::lut[cell][3 * t + k]];
                const bool firstInside = (cell >> ends[0] & 1) != 0;
                EXPECT_NE(firstInside, (cell >> ends[1] & 1) != 0);
                for (int i = 0; i < 3; ++i) {
                    point[k][i] = (kCorner[ends[0]][i] + kCorner[ends[1]][i]) / 2.0;
                    outward[i] += (kCorner[ends[1]][i] - kCorner[ends[0]][i]) * (firstInside ? 1 : -1);
                }
            }
            double along = 0;
            for (int i = 0; i < 3; ++i) {
                const int j = (i + 1) % 3, l = (i + 2) % 3;
                along += outward[i] * ((point[1][j] - point[0][j]) * (point[2][l] - point[0][l]) -
                                       (point[1][l] - point[0][l]) * (point[2][j] - point[0][j]));
            }
            EXPECT_GE(along, 0) << cell;
        }
    }
    EXPECT_EQ(total, 820);
}

/// Cell by cell through the slots, with nothing kept or left out.
void plainTriangles(const LevelSet3D& field, Vectors& vertices, Vectors& normals) {
    for (int z = 0; z + 1 < field.getDepth(); ++z)
        for (int y = 0; y + 1 < field.getHeight(); ++y)
            for (int x = 0; x + 1 < field.getWidth(); ++x) {
                int cell = 0;
                for (int c = 0; c < 8; ++c)
                    if (field.get(x + kCorner[c][0], y + kCorner[c][1], z + kCorner[c][2]) <= 0)
                        cell |= 1 << c;
                for (int k = 0; k < 3 * MarchingCubes::lut_sizes[cell]; ++k) {
                    const signed char* ends = MarchingCubes::edges[MarchingCubes::lut[cell][k]];
                    const int *p = kCorner[ends[0]], *q = kCorner[ends[1]];
                    brin::Vec3<double> normal(0, 0, 0);
                    vertices.push_back(
                        field.getPoint(x + p[0], y + p[1], z + p[2], x + q[0], y + q[1], z + q[2], &normal));
                    const double length =
                        std::sqrt(normal.x * normal.x + normal.y * normal.y + normal.z * normal.z);
                    if (!(std::abs(length - 1) < 1e-14))
                        normal = length > 1e-14 ? normal / length : brin::Vec3<double>(0, 0, 0);
                    normals.push_back(normal);
                }
            }
}

TEST(Triangles, AreTheSameBitsOnBothPathsAndCellByCell) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        Vectors vertices(3), normals(1), slowVertices, slowNormals, plainVertices, plainNormals;
        std::vector<gpoint3> triangles(2), slowTriangles;
        dense.getTriangles(vertices, normals, triangles);
        slow.getTriangles(slowVertices, slowNormals, slowTriangles);
        plainTriangles(slow, plainVertices, plainNormals);
        ASSERT_EQ(bits(vertices), bits(slowVertices));
        ASSERT_EQ(bits(normals), bits(slowNormals));
        ASSERT_EQ(bits(vertices), bits(plainVertices));
        ASSERT_EQ(bits(normals), bits(plainNormals));
        ASSERT_EQ(vertices.size(), 3 * triangles.size());
        for (std::size_t t = 0; t < triangles.size(); ++t) {
            const int first = static_cast<int>(3 * t);
            ASSERT_TRUE((triangles[t] == gpoint3{first, first + 1, first + 2}));
        }
    });
}

/// Remembers in which order its sizes are asked for.
struct AskedForSizes : FullLevelSet3D {
    mutable std::string asked;
    int getWidth() const override { return asked += 'w', FullLevelSet3D::getWidth(); }
    int getHeight() const override { return asked += 'h', FullLevelSet3D::getHeight(); }
    int getDepth() const override { return asked += 'd', FullLevelSet3D::getDepth(); }
    // Those of the grid ask for a size too.
    double getDxCentral(int, int, int) const override { return 0; }
    double getDyCentral(int, int, int) const override { return 0; }
    double getDzCentral(int, int, int) const override { return 0; }
};

TEST(Triangles, ReadDepthHeightAndWidthOnce) {
    for (const Size3D size : {Size3D{4, 3, 3}, {4, 3, 1}, {0, 0, 0}}) {
        AskedForSizes grid;
        fill(grid, size, [](int x, int, int) { return x - 1.5; });
        Vectors vertices, normals;
        std::vector<gpoint3> triangles;
        grid.asked.clear();
        grid.getTriangles(vertices, normals, triangles);
        EXPECT_EQ(grid.asked, "dhw");
    }
}

TEST(Triangles, OfABallLieOnItWithNormalsOutwards) {
    FullLevelSet3D grid;
    fill(grid, {24, 24, 24},
         [](int x, int y, int z) { return std::hypot(x - 11.4, y - 11.7, z - 12.2) - 8; });
    Vectors vertices, normals;
    std::vector<gpoint3> triangles;
    grid.getTriangles(vertices, normals, triangles);
    ASSERT_GT(triangles.size(), 500U);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const auto out = vertices[i] - brin::Vec3<double>(11.4, 11.7, 12.2);
        EXPECT_NEAR(std::sqrt(dot(out, out)), 8, 0.03);
        EXPECT_NEAR(dot(normals[i], normals[i]), 1, 1e-12);
        EXPECT_GT(dot(out, normals[i]), 7.9);
    }
}

/// Every side of a triangle is once a side of another, the other way round.
bool isClosed(const std::vector<gpoint3>& triangles) {
    std::map<std::pair<int, int>, int> sides;
    for (const gpoint3& t : triangles)
        for (const auto& [a, b] : {std::pair{t.first, t.second}, {t.second, t.third}, {t.third, t.first}}) {
            ++sides[{a, b}];
            --sides[{b, a}];
        }
    return std::all_of(sides.begin(), sides.end(), [](const auto& side) { return side.second == 0; });
}

TEST(Mesh, IsTheSoupWithSharedVertices) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        Vectors vertices, normals, soup, soupNormals, slowVertices, slowNormals;
        std::vector<gpoint3> triangles, soupTriangles, slowTriangles;
        dense.getTriangles(soup, soupNormals, soupTriangles);
        quorbin::getTrianglesUnique(dense, vertices, normals, triangles);
        quorbin::getTrianglesUnique(slow, slowVertices, slowNormals, slowTriangles);
        ASSERT_EQ(bits(vertices), bits(slowVertices));
        ASSERT_EQ(bits(normals), bits(slowNormals));
        ASSERT_EQ(triangles.size(), soupTriangles.size());
        for (std::size_t t = 0; t < triangles.size(); ++t) {
            ASSERT_TRUE(triangles[t] == slowTriangles[t]);
            const int corners[3] = {triangles[t].first, triangles[t].second, triangles[t].third};
            for (std::size_t k = 0; k < 3; ++k) {
                const auto apart = vertices[static_cast<std::size_t>(corners[k])] - soup[3 * t + k];
                ASSERT_LT(dot(apart, apart), 1e-24);
            }
        }
        ASSERT_LE(vertices.size(), soup.size());
    });
}

TEST(Mesh, IsClosedWithinTheGridAndWithACapEverywhere) {
    Vectors vertices, normals;
    std::vector<gpoint3> triangles;
    FullLevelSet3D ball;
    fill(
        ball, {24, 24, 12},
        [](int x, int y, int z) { return std::hypot(x - 11.4, y - 11.7, 2 * (z - 5.6)) - 8; }, 1, 1, 2);
    quorbin::getTrianglesUnique(ball, vertices, normals, triangles);
    EXPECT_TRUE(isClosed(triangles));
    EXPECT_EQ(2 * (vertices.size() - 2), triangles.size());  // Euler's formula for a sphere
    EXPECT_NEAR(quorbin::surfaceArea(vertices, triangles, 1, 1, 2), 4 * M_PI * 64, 12);
    EXPECT_NEAR(quorbin::enclosedVolume(vertices, triangles, 1, 1, 2), 4 / 3.0 * M_PI * 512, 45);

    onVolumePairs([&](FullLevelSet3D& dense, SlowVolume& slow) {
        Vectors slowVertices, slowNormals;
        std::vector<gpoint3> slowTriangles;
        quorbin::getTrianglesCapped(slow, slowVertices, slowNormals, slowTriangles);
        quorbin::getTrianglesCapped(dense, vertices, normals, triangles);
        ASSERT_EQ(bits(vertices), bits(slowVertices));
        ASSERT_EQ(bits(normals), bits(slowNormals));
        ASSERT_TRUE(isClosed(triangles));
        ASSERT_GE(quorbin::enclosedVolume(vertices, triangles), -1e-12);
        for (const auto& v : vertices) {
            ASSERT_TRUE(v.x >= 0 && v.x <= dense.getWidth() - 1 && v.y >= 0 && v.y <= dense.getHeight() - 1);
            ASSERT_TRUE(v.z >= 0 && v.z <= dense.getDepth() - 1);
        }
    });
    // All inside: the cap is the box of the grid.
    FullLevelSet3D full;
    fill(full, {4, 5, 6}, [](int, int, int) { return -1.0; });
    quorbin::getTrianglesCapped(full, vertices, normals, triangles);
    EXPECT_DOUBLE_EQ(quorbin::enclosedVolume(vertices, triangles), 3 * 4 * 5);
    EXPECT_DOUBLE_EQ(quorbin::surfaceArea(vertices, triangles), 2 * (12 + 15 + 20));
}

TEST(Mesh, ByValueIsInWorldUnits) {
    FullLevelSet3D ball;
    fill(
        ball, {20, 20, 6},
        [](int x, int y, int z) { return std::hypot(x - 9.4, y - 9.7, 2 * (z - 4.6)) - 6; }, 0.5, 0.5, 1);
    Vectors vertices, normals;
    std::vector<gpoint3> triangles;
    for (const bool capped : {false, true}) {
        const quorbin::Mesh mesh = quorbin::mesh(ball, {capped});
        if (capped)
            quorbin::getTrianglesCapped(ball, vertices, normals, triangles);
        else
            quorbin::getTrianglesUnique(ball, vertices, normals, triangles);
        ASSERT_EQ(mesh.triangles.size(), triangles.size());
        EXPECT_EQ(bits(mesh.normals), bits(normals));
        EXPECT_EQ(mesh.vertices[3],
                  brin::Vec3<double>(0.5 * vertices[3].x, 0.5 * vertices[3].y, vertices[3].z));
        EXPECT_DOUBLE_EQ(quorbin::enclosedVolume(mesh),
                         quorbin::enclosedVolume(vertices, triangles, 0.5, 0.5, 1));
        EXPECT_EQ(isClosed(mesh.triangles), capped);
    }
    const FastLevelSet3D band = quorbin::bandOf(ball, false);
    const quorbin::Mesh open = quorbin::mesh(ball), ofBand = quorbin::mesh(band);
    EXPECT_EQ(ofBand.triangles.size(), open.triangles.size());
    EXPECT_NEAR(quorbin::surfaceArea(ofBand), quorbin::surfaceArea(open), 1e-9);
    const LevelSet3D& withoutExtent = band;
    EXPECT_THROW(quorbin::mesh(withoutExtent), std::invalid_argument);
}

TEST(Mesh, HasFiniteVerticesBesideValuesThatAreNot) {
    FullLevelSet3D grid;
    const double values[] = {-1, std::nan(""), HUGE_VAL, -HUGE_VAL, 1};
    fill(grid, {7, 6, 5}, [&](int x, int y, int z) { return values[(x * y + 3 * z + y) % 5]; });
    for (const bool capped : {false, true}) {
        const quorbin::Mesh mesh = quorbin::mesh(grid, {capped});
        ASSERT_GT(mesh.vertices.size(), 100U);
        for (const auto& v : mesh.vertices)
            ASSERT_TRUE(v.x >= 0 && v.x <= 6 && v.y >= 0 && v.y <= 5 && v.z >= 0 && v.z <= 4);
    }
}

TEST(GetPoint, GivesMidpointsAndReportsWhatDoesNotCross) {
    FullLevelSet3D grid;
    fill(grid, {2, 2, 2}, [](int x, int, int) { return x == 0 ? -1.0 : 3.0; });
    brin::Vec3<double> normal(7, 7, 7);
    EXPECT_EQ(grid.getPoint(0, 1, 1, 1, 1, 1, nullptr), (brin::Vec3<double>(0.25, 1, 1)));
    testing::internal::CaptureStdout();
    EXPECT_EQ(grid.getPoint(0, 0, 0, 0, 1, 0, &normal), (brin::Vec3<double>(0, 0.5, 0)));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "erroneous point a=-1.000000, b=-1.000000\n");
    EXPECT_EQ(normal, (brin::Vec3<double>(7, 7, 7)));
    EXPECT_EQ(gpoint3()(gpoint3{1, 2, 3}), 1U + 64 * 2 + 4096 * 3);
    EXPECT_TRUE(gpoint3()(gpoint3{1, 2, 3}, gpoint3{1, 2, 3}));
}

TEST(Mesh, WithProgressIsTheSameAndEndedLeavesWhatWasThere) {
    onVolumePairs([](FullLevelSet3D& dense, SlowVolume& slow) {
        for (const bool capped : {false, true})
            for (const LevelSet3D* field :
                 {static_cast<LevelSet3D*>(&dense), static_cast<LevelSet3D*>(&slow)}) {
                const quorbin::Mesh plain = quorbin::mesh(*field, {capped});
                const auto watched = quorbin::mesh(*field, {capped}, [](int, int) { return true; });
                ASSERT_TRUE(watched.has_value());
                EXPECT_EQ(bits(watched->vertices), bits(plain.vertices));
                EXPECT_EQ(bits(watched->normals), bits(plain.normals));
                EXPECT_EQ(watched->triangles.size(), plain.triangles.size());
                Vectors vertices(1), normals(2);
                std::vector<gpoint3> triangles(3);
                const auto endHalfWay = [](int done, int all) { return 2 * done < all; };
                EXPECT_EQ(quorbin::getTrianglesUnique(*field, vertices, normals, triangles, endHalfWay),
                          field->getDepth() < 2 || field->getWidth() < 2 || field->getHeight() < 2);
                if (field->getDepth() > 1 && field->getWidth() > 1 && field->getHeight() > 1) {
                    EXPECT_EQ(vertices.size() + normals.size() + triangles.size(), 6U);
                }
            }
    });
}

}  // namespace
