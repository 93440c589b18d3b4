#include "quorbin3d/mesh.h"

#include <algorithm>
#include <cmath>

#include "common/watch.h"
#include "quorbin3d/extraction/cells.h"
#include "quorbin3d/extraction/gradients.h"
#include "quorbin3d/extraction/indexed_mesh.h"
#include "quorbin3d/extraction/shared_vertices.h"

using namespace lset::detail;

namespace {

/// Adds the triangles of a cell. makeVertex(p, q, normal) gives the crossing between two corners and its
/// normal, which is not of unit length yet.
template <class MakeVertex>
void addCell(IndexedMesh& mesh, SharedVertices& shared, int x, int y, int z, int cell,
             MakeVertex makeVertex) {
    mesh.addCell(
        cell, [&](int edge) -> int& { return shared.at(x, y, edge); },
        [&](int edge) {
            Vec3 normal(0, 0, 0);
            const Vec3 vertex = makeVertex(corner(x, y, z, MarchingCubes::edges[edge][0]),
                                           corner(x, y, z, MarchingCubes::edges[edge][1]), normal);
            return Crossing{vertex, unit(normal)};
        });
}

/// zeroCrossing for samples that may not be finite: beside such a one, not-a-number included, the crossing is
/// at the finite sample, without a normal, and between two of them at the midpoint.
template <class GradientAt>
Vec3 crossingBetween(const GridPoint3D& p, double a, const GridPoint3D& q, double b, Vec3* normal,
                     GradientAt&& gradientAt) {
    if (std::isfinite(a) && std::isfinite(b)) return zeroCrossing(p, a, q, b, normal, gradientAt);
    const Vec3 atP(p.x, p.y, p.z), atQ(q.x, q.y, q.z);
    return std::isfinite(a) ? atP : std::isfinite(b) ? atQ : 0.5 * (atP + atQ);
}

/// A field with a layer of points around it that are outside; its points are numbered from that layer.
template <class Reader>
struct SurroundedField {
    const Reader& field;

    int width() const { return field.width() + 2; }
    int height() const { return field.height() + 2; }
    int depth() const { return field.depth() + 2; }
    bool isInGrid(const GridPoint3D& p) const {
        return p.x > 0 && p.x <= field.width() && p.y > 0 && p.y <= field.height() && p.z > 0 &&
               p.z <= field.depth();
    }
    bool isInside(const GridPoint3D& p) const {
        return isInGrid(p) && field.getInGrid(p.x - 1, p.y - 1, p.z - 1) <= 0;
    }
};

template <class Reader>
void meshSurrounded(const Reader& field, IndexedMesh& mesh, Stretch stretch) {
    const SurroundedField<Reader> surrounded{field};
    const int width = surrounded.width(), height = surrounded.height(), depth = surrounded.depth();
    SharedVertices shared(width, height);
    const FreshGradients<Reader> gradientAt(field);
    const auto inner = [](const GridPoint3D& p) { return GridPoint3D{p.x - 1, p.y - 1, p.z - 1}; };
    const auto makeVertex = [&](const GridPoint3D& p, const GridPoint3D& q, Vec3& normal) {
        const GridPoint3D a = inner(p), b = inner(q);
        if (surrounded.isInGrid(p) && surrounded.isInGrid(q)) {
            const Vec3 v = crossingBetween(a, field.getInGrid(a.x, a.y, a.z), b,
                                           field.getInGrid(b.x, b.y, b.z), &normal, gradientAt);
            // Rounding must not take it beyond the face.
            return Vec3(std::clamp(v.x, 0.0, width - 3.0), std::clamp(v.y, 0.0, height - 3.0),
                        std::clamp(v.z, 0.0, depth - 3.0));
        }
        // On the face of the grid, at the end that is in it.
        const bool isFirst = surrounded.isInGrid(p);
        const GridPoint3D in = isFirst ? a : b, out = isFirst ? b : a;
        normal = {double(out.x - in.x), double(out.y - in.y), double(out.z - in.z)};
        return Vec3(in.x, in.y, in.z);
    };
    stretch.expect(static_cast<std::size_t>(depth - 1));
    for (int z = 0; z < depth - 1; ++z) {
        for (int y = 0; y < height - 1; ++y) {
            // The upper corners along x of one cell are the lower ones of the next.
            static constexpr int kLower[4] = {0, 3, 4, 7}, kUpper[4] = {1, 2, 5, 6};
            int last = 0;
            for (int x = 0; x < width - 1; ++x) {
                int cell = 0;
                for (int k = 0; k < 4; ++k) {
                    if ((last >> kUpper[k] & 1) != 0) cell |= 1 << kLower[k];
                    if (surrounded.isInside(corner(x, y, z, kUpper[k]))) cell |= 1 << kUpper[k];
                }
                if (cell != 0 && cell != 255) addCell(mesh, shared, x, y, z, cell, makeVertex);
                last = cell;
            }
        }
        shared.nextLayer();
        stretch.tellStep();
    }
}

void meshUnique(const LevelSet3D& field, IndexedMesh mesh, const Stretch& stretch) {
    mesh.clear();
    withReader(field, [&](const auto& reader) {
        if (reader.width() < 2 || reader.height() < 2) return;
        SharedVertices shared(reader.width(), reader.height());
        auto gradients = gradientsOf(reader);
        const auto makeVertex = [&](const GridPoint3D& p, const GridPoint3D& q, Vec3& normal) {
            const double a = reader.getInGrid(p.x, p.y, p.z);
            const double b = reader.getInGrid(q.x, q.y, q.z);
            return crossingBetween(p, a, q, b, &normal, gradients);
        };
        forEachCrossedCell(
            reader, [&](int x, int y, int z, int cell) { addCell(mesh, shared, x, y, z, cell, makeVertex); },
            [&](int done, int all) {
                shared.nextLayer();
                gradients.nextLayer();
                stretch.tell(static_cast<double>(done) / all);
            });
    });
}

void meshCapped(const LevelSet3D& field, IndexedMesh mesh, const Stretch& stretch) {
    mesh.clear();
    withReader(field, [&](const auto& reader) {
        if (reader.width() > 0 && reader.height() > 0 && reader.depth() > 0)
            meshSurrounded(reader, mesh, stretch);
    });
}

/// Makes a mesh by make(field, mesh, stretch), and takes it where it was not ended.
bool makeWatched(void (*make)(const LevelSet3D&, IndexedMesh, const Stretch&), const LevelSet3D& field,
                 IndexedMesh mesh, const quorbin::Progress& progress) {
    quorbin::Mesh made;
    const IndexedMesh parts{made.vertices, made.normals, made.triangles};
    if (!isDoneToTheEnd(progress, [&](const Stretch& whole) { make(field, parts, whole); })) return false;
    mesh.vertices.swap(made.vertices);
    mesh.normals.swap(made.normals);
    mesh.triangles.swap(made.triangles);
    return true;
}

}  // namespace

void quorbin::getTrianglesUnique(const LevelSet3D& field, std::vector<Vec3>& vertices,
                                 std::vector<Vec3>& normals, std::vector<gpoint3>& triangles) {
    meshUnique(field, {vertices, normals, triangles}, Stretch());
}

void quorbin::getTrianglesCapped(const LevelSet3D& field, std::vector<Vec3>& vertices,
                                 std::vector<Vec3>& normals, std::vector<gpoint3>& triangles) {
    meshCapped(field, {vertices, normals, triangles}, Stretch());
}

bool quorbin::getTrianglesUnique(const LevelSet3D& field, std::vector<Vec3>& vertices,
                                 std::vector<Vec3>& normals, std::vector<gpoint3>& triangles,
                                 const Progress& progress) {
    return makeWatched(meshUnique, field, {vertices, normals, triangles}, progress);
}

bool quorbin::getTrianglesCapped(const LevelSet3D& field, std::vector<Vec3>& vertices,
                                 std::vector<Vec3>& normals, std::vector<gpoint3>& triangles,
                                 const Progress& progress) {
    return makeWatched(meshCapped, field, {vertices, normals, triangles}, progress);
}
