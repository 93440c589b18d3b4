#include "common/extraction/append_buffer.h"
#include "quorbin3d/extraction/cells.h"
#include "quorbin3d/extraction/gradients.h"

using namespace lset::detail;

namespace {

/// The crossings of a cell, each formed anew whenever a triangle has it, as a subclass may count on.
class FreshCrossings {
 public:
    explicit FreshCrossings(const VirtualReader3D& field) : field_(field) {}
    void enterCell(int x, int y, int z) { cell_ = {x, y, z}; }
    void nextLayer() {}

    Crossing at(int edge) const {
        const GridPoint3D p = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[edge][0]);
        const GridPoint3D q = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[edge][1]);
        Vec3 normal(0, 0, 0);
        const Vec3 vertex = field_.levelSet.getPoint(p.x, p.y, p.z, q.x, q.y, q.z, &normal);
        return {vertex, unit(normal)};
    }

 private:
    const VirtualReader3D& field_;
    GridPoint3D cell_{};
};

/// The same of exactly the dense grid, each formed once a cell.
class KeptCrossings {
 public:
    explicit KeptCrossings(const DenseReader3D& field) : field_(field), gradients_(field) {}
    void enterCell(int x, int y, int z) {
        cell_ = {x, y, z};
        crossings_.clear();
    }
    void nextLayer() { gradients_.nextLayer(); }

    const Crossing& at(int edge) {
        return crossings_.at(edge, [this](int made) {
            const GridPoint3D p = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[made][0]);
            const GridPoint3D q = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[made][1]);
            Vec3 normal(0, 0, 0);
            const Vec3 vertex = zeroCrossing(p, field_.getInGrid(p.x, p.y, p.z), q,
                                             field_.getInGrid(q.x, q.y, q.z), &normal, gradients_);
            return Crossing{vertex, unit(normal)};
        });
    }

 private:
    const DenseReader3D& field_;
    KeptGradients gradients_;
    GridPoint3D cell_{};
    CellCrossings3D crossings_;
};

FreshCrossings crossingsOf(const VirtualReader3D& field) { return FreshCrossings(field); }
KeptCrossings crossingsOf(const DenseReader3D& field) { return KeptCrossings(field); }

}  // namespace

void LevelSet3D::getTriangles(std::vector<Vec3>& vertices, std::vector<Vec3>& normals,
                              std::vector<gpoint3>& triangles) {
    vertices.clear();
    normals.clear();
    triangles.clear();
    withReader(*this, [&](const auto& field) {
        auto crossings = crossingsOf(field);
        AppendBuffer<Vec3> newVertices(vertices), newNormals(normals);
        AppendBuffer<gpoint3> newTriangles(triangles);
        const auto visit = [&](int x, int y, int z, int cell) {
            crossings.enterCell(x, y, z);
            const signed char* edge = MarchingCubes::lut[cell];
            for (int t = 0; t < MarchingCubes::lut_sizes[cell]; ++t) {
                const int first = static_cast<int>(newVertices.size());
                for (int v = 0; v < 3; ++v, ++edge) {
                    const Crossing& crossing = crossings.at(*edge);
                    newVertices.next() = crossing.vertex;
                    newNormals.next() = crossing.normal;
                }
                newTriangles.next() = {first, first + 1, first + 2};
            }
        };
        forEachCrossedCell(field, visit, [&](int layersDone, int layers) {
            crossings.nextLayer();
            newVertices.progress(layersDone, layers);
            newNormals.progress(layersDone, layers);
            newTriangles.progress(layersDone, layers);
        });
        newVertices.flush();
        newNormals.flush();
        newTriangles.flush();
    });
}

Vec3 LevelSet3D::getPoint(int x1, int y1, int z1, int x2, int y2, int z2, Vec3* normal) const {
    const double a = get(x1, y1, z1);
    const double b = get(x2, y2, z2);
    const VirtualReader3D field{*this};
    return zeroCrossing({x1, y1, z1}, a, {x2, y2, z2}, b, normal, FreshGradients<VirtualReader3D>(field));
}
