#include "quorbin3d/extraction/band_cells.h"
#include "quorbin3d/extraction/triangle_soup.h"

using namespace lset::detail;

void FastLevelSet3D::getTriangles(std::vector<Vec3>& vertices, std::vector<Vec3>& normals,
                                  std::vector<gpoint3>& triangles) {
    withBandReader(*this, work(), [&](auto& band, BandWorkspace<3>&) {
        TriangleSoup soup(vertices, normals, triangles);
        auto crossings = bandCrossingsOf(band);
        forEachBandCell(band, [&](const auto& cell) {
            crossings.enterCell();
            soup.addCell(cell.number, [&](int edge) -> decltype(auto) { return crossings.at(cell, edge); });
        });
        soup.flush();
    });
}
