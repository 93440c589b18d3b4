#include "quorbin3d/extraction/cells.h"
#include "quorbin3d/extraction/gradients.h"
#include "quorbin3d/extraction/triangle_soup.h"

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
    TriangleSoup soup(vertices, normals, triangles);
    withReader(*this, [&](const auto& field) {
        auto crossings = crossingsOf(field);
        const auto visit = [&](int x, int y, int z, int cell) {
            crossings.enterCell(x, y, z);
            soup.addCell(cell, [&](int edge) -> decltype(auto) { return crossings.at(edge); });
        };
        forEachCrossedCell(field, visit, [&](int layersDone, int layers) {
            crossings.nextLayer();
            soup.progress(layersDone, layers);
        });
    });
    soup.flush();
}
