#pragma once

#include <vector>

#include "quorbin3d/extraction/crossing.h"
#include "quorbin3d/gpoint3.h"
#include "quorbin3d/marching_cubes.h"

namespace lset::detail {

/// A mesh in the making, whose vertices are shared.
struct IndexedMesh {
    static constexpr int kNone = -1;

    std::vector<Vec3>& vertices;
    std::vector<Vec3>& normals;
    std::vector<gpoint3>& triangles;

    void clear() {
        vertices.clear();
        normals.clear();
        triangles.clear();
    }

    /// Adds the triangles of a cell. indexAt(edge) refers to the index that is kept for an edge, kNone if
    /// there is none yet; make(edge) forms the crossing.
    template <class IndexAt, class Make>
    void addCell(int caseOfCell, IndexAt indexAt, Make make) {
        const signed char* edge = MarchingCubes::lut[caseOfCell];
        for (int t = 0; t < MarchingCubes::lut_sizes[caseOfCell]; ++t) {
            int triangle[3];
            for (int& index : triangle) {
                int& kept = indexAt(*edge);
                if (kept == kNone) {
                    kept = static_cast<int>(vertices.size());
                    const Crossing crossing = make(*edge);
                    vertices.push_back(crossing.vertex);
                    normals.push_back(crossing.normal);
                }
                index = kept;
                ++edge;
            }
            triangles.push_back({triangle[0], triangle[1], triangle[2]});
        }
    }
};

}  // namespace lset::detail
