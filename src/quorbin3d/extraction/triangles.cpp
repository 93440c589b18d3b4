#include <array>
#include <cstddef>

#include "common/append_buffer.h"
#include "quorbin3d/extraction/cells.h"
#include "quorbin3d/extraction/gradients.h"

using namespace lset::detail;

namespace {

/// The crossings of a cell, each formed anew whenever a triangle has it, as a subclass may count on.
class FreshCrossings {
 public:
    explicit FreshCrossings(const VirtualReader3D& field) : field_(field), gradients_(field) {}
    void enterCell(int x, int y, int z) { cell_ = {x, y, z}; }
    void nextLayer() {}

    void get(int edge, Vec3& vertex, Vec3& normal) {
        const GridPoint3D p = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[edge][0]);
        const GridPoint3D q = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[edge][1]);
        const double a = field_.getInGrid(p.x, p.y, p.z);
        const double b = field_.getInGrid(q.x, q.y, q.z);
        normal = Vec3(0, 0, 0);
        vertex = zeroCrossing(p, a, q, b, &normal, gradients_);
        normal = unit(normal);
    }

 private:
    const VirtualReader3D& field_;
    FreshGradients<VirtualReader3D> gradients_;
    GridPoint3D cell_{};
};

/// The same of exactly the dense grid, each formed once a cell.
class KeptCrossings {
 public:
    explicit KeptCrossings(const DenseReader3D& field) : field_(field), gradients_(field) {}
    void enterCell(int x, int y, int z) {
        cell_ = {x, y, z};
        known_ = 0;
    }
    void nextLayer() { gradients_.nextLayer(); }

    void get(int edge, Vec3& vertex, Vec3& normal) {
        const auto i = static_cast<std::size_t>(edge);
        if ((known_ >> edge & 1U) == 0) {
            known_ |= 1U << edge;
            const GridPoint3D p = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[edge][0]);
            const GridPoint3D q = corner(cell_.x, cell_.y, cell_.z, MarchingCubes::edges[edge][1]);
            Vec3 mean(0, 0, 0);
            vertices_[i] = zeroCrossing(p, field_.getInGrid(p.x, p.y, p.z), q,
                                        field_.getInGrid(q.x, q.y, q.z), &mean, gradients_);
            normals_[i] = unit(mean);
        }
        vertex = vertices_[i];
        normal = normals_[i];
    }

 private:
    const DenseReader3D& field_;
    KeptGradients gradients_;
    GridPoint3D cell_{};
    unsigned known_ = 0;
    std::array<Vec3, 12> vertices_, normals_;
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
        const int layers = field.depth() - 1;
        const auto visit = [&](int x, int y, int z, int cell) {
            crossings.enterCell(x, y, z);
            const signed char* edge = MarchingCubes::lut[cell];
            for (int t = 0; t < MarchingCubes::lut_sizes[cell]; ++t) {
                const int first = static_cast<int>(newVertices.size());
                for (int v = 0; v < 3; ++v, ++edge)
                    crossings.get(*edge, newVertices.next(), newNormals.next());
                newTriangles.next() = {first, first + 1, first + 2};
            }
        };
        forEachCrossedCell(field, visit, [&](int z) {
            crossings.nextLayer();
            newVertices.progress(z + 1, layers);
            newNormals.progress(z + 1, layers);
            newTriangles.progress(z + 1, layers);
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
