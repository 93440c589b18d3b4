#include "common/extraction/append_buffer.h"
#include "quorbin3d/extraction/band_cells.h"

using namespace lset::detail;

void FastLevelSet3D::getTriangles(std::vector<Vec3>& vertices, std::vector<Vec3>& normals,
                                  std::vector<gpoint3>& triangles) {
    vertices.clear();
    normals.clear();
    triangles.clear();
    withBandReader(*this, *work_, [&](auto& band, BandWorkspace<3>&) {
        auto crossings = bandCrossingsOf(band);
        AppendBuffer<Vec3> newVertices(vertices), newNormals(normals);
        AppendBuffer<gpoint3> newTriangles(triangles);
        forEachBandCell(band, [&](const auto& cell) {
            crossings.enterCell();
            const signed char* edge = MarchingCubes::lut[cell.number];
            for (int t = 0; t < MarchingCubes::lut_sizes[cell.number]; ++t) {
                const int first = static_cast<int>(newVertices.size());
                for (int v = 0; v < 3; ++v, ++edge) {
                    const Crossing& crossing = crossings.at(cell, *edge);
                    newVertices.next() = crossing.vertex;
                    newNormals.next() = crossing.normal;
                }
                newTriangles.next() = {first, first + 1, first + 2};
            }
        });
        newVertices.flush();
        newNormals.flush();
        newTriangles.flush();
    });
}
