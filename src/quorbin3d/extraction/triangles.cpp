#include "quorbin3d/extraction/cells.h"
#include "quorbin3d/extraction/gradients.h"

using namespace lset::detail;

void LevelSet3D::getTriangles(std::vector<Vec3>& vertices, std::vector<Vec3>& normals,
                              std::vector<gpoint3>& triangles) {
    vertices.clear();
    normals.clear();
    triangles.clear();
    withReader(*this, [&](const auto& field) {
        auto gradients = gradientsOf(field);
        const auto visit = [&](int x, int y, int z, int cell) {
            const signed char* edge = MarchingCubes::lut[cell];
            for (int t = 0; t < MarchingCubes::lut_sizes[cell]; ++t) {
                for (int v = 0; v < 3; ++v, ++edge) {
                    const GridPoint3D p = corner(x, y, z, MarchingCubes::edges[*edge][0]);
                    const GridPoint3D q = corner(x, y, z, MarchingCubes::edges[*edge][1]);
                    const double a = field.getInGrid(p.x, p.y, p.z);
                    const double b = field.getInGrid(q.x, q.y, q.z);
                    Vec3 normal(0, 0, 0);
                    vertices.push_back(zeroCrossing(p, a, q, b, &normal, gradients));
                    normals.push_back(unit(normal));
                }
                const int count = static_cast<int>(vertices.size());
                triangles.push_back({count - 3, count - 2, count - 1});
            }
        };
        forEachCrossedCell(field, visit, [&](int) { gradients.nextLayer(); });
    });
}

Vec3 LevelSet3D::getPoint(int x1, int y1, int z1, int x2, int y2, int z2, Vec3* normal) const {
    const double a = get(x1, y1, z1);
    const double b = get(x2, y2, z2);
    const VirtualReader3D field{*this};
    return zeroCrossing({x1, y1, z1}, a, {x2, y2, z2}, b, normal, FreshGradients<VirtualReader3D>(field));
}
