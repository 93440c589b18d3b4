#pragma once

#include <vector>

#include "common/extraction/append_buffer.h"
#include "quorbin3d/extraction/crossing.h"
#include "quorbin3d/gpoint3.h"
#include "quorbin3d/marching_cubes.h"

namespace lset::detail {

/// A mesh in the making whose triangles share nothing. What the vectors held is gone.
class TriangleSoup {
 public:
    TriangleSoup(std::vector<Vec3>& vertices, std::vector<Vec3>& normals, std::vector<gpoint3>& triangles)
        : vertices_(vertices), normals_(normals), triangles_(triangles) {
        vertices.clear();
        normals.clear();
        triangles.clear();
    }

    /// Adds the triangles of a case; crossingAt(edge) gives their vertices and normals.
    template <class CrossingAt>
    void addCell(int caseOfCell, const CrossingAt& crossingAt) {
        const signed char* edge = MarchingCubes::lut[caseOfCell];
        for (int t = 0; t < MarchingCubes::lut_sizes[caseOfCell]; ++t) {
            const int first = static_cast<int>(vertices_.size());
            for (int v = 0; v < 3; ++v, ++edge) {
                const Crossing& crossing = crossingAt(*edge);
                vertices_.next() = crossing.vertex;
                normals_.next() = crossing.normal;
            }
            triangles_.next() = {first, first + 1, first + 2};
        }
    }

    /// Says that done of all equal parts of the work are over.
    void progress(int done, int all) {
        vertices_.progress(done, all);
        normals_.progress(done, all);
        triangles_.progress(done, all);
    }

    /// Puts what has been added into the vectors.
    void flush() {
        vertices_.flush();
        normals_.flush();
        triangles_.flush();
    }

 private:
    AppendBuffer<Vec3> vertices_, normals_;
    AppendBuffer<gpoint3> triangles_;
};

}  // namespace lset::detail
