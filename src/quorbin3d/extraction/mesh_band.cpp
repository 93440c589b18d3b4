#include <cstddef>
#include <vector>

#include "band/storage/band_access.h"
#include "quorbin3d/extraction/band_cells.h"
#include "quorbin3d/extraction/indexed_mesh.h"
#include "quorbin3d/extraction/mesh_band.h"
#include "quorbin3d/mesh.h"

using namespace lset::detail;

namespace {

/// The index of the vertex on each grid edge, by the number of the grid point where the edge begins, and its
/// axis.
class VerticesByEdge {
 public:
    template <class Reader, class Cell>
    int& at(Reader& band, const Cell& cell, int edge) {
        // The end with the smaller coordinates, and the axis, of each edge of a cell.
        static constexpr int kBegin[12] = {0, 1, 3, 0, 1, 2, 3, 0, 4, 5, 7, 4};
        static constexpr std::size_t kAxis[12] = {0, 1, 0, 1, 2, 2, 2, 2, 0, 1, 0, 1};
        const auto number = static_cast<std::size_t>(band.number(cell.corners[kBegin[edge]]));
        if (indices_.size() < 3 * band.tiles().size())
            indices_.resize(3 * band.tiles().size(), IndexedMesh::kNone);
        return indices_[3 * number + kAxis[edge]];
    }

 private:
    std::vector<int> indices_;
};

constexpr std::size_t kStepsOfACell = 16;

}  // namespace

void lset::detail::meshOfBand(const FastLevelSet3D& field, IndexedMesh mesh, const Stretch& stretch) {
    mesh.clear();
    auto& notWritten = const_cast<FastLevelSet3D&>(field);  // readers can write, this does not
    withBandReader(
        notWritten, BandAccess::work(field),
        [&](auto& band, BandWorkspace<3>&) {
            Stretch rest = stretch.part(0.3, 1);
            rest.expect(kStepsOfACell * band.entries().size());
            auto crossings = bandCrossingsOf(band);
            VerticesByEdge shared;
            forEachBandCell(band, [&](const auto& cell) {
                rest.step(kStepsOfACell);
                crossings.enterCell();
                mesh.addCell(
                    cell.number, [&](int edge) -> int& { return shared.at(band, cell, edge); },
                    [&](int edge) { return crossings.at(cell, edge); });
            });
        },
        stretch.part(0, 0.3));
}

void quorbin::getTrianglesUnique(const FastLevelSet3D& field, std::vector<Vec3>& vertices,
                                 std::vector<Vec3>& normals, std::vector<gpoint3>& triangles) {
    meshOfBand(field, {vertices, normals, triangles}, {});
}
