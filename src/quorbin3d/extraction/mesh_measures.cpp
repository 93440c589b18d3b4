#include <cmath>
#include <cstddef>

#include "quorbin3d/mesh.h"

using Vec3 = brin::Vec3<double>;

double quorbin::surfaceArea(const std::vector<Vec3>& vertices, const std::vector<gpoint3>& triangles,
                            double xSpace, double ySpace, double zSpace) {
    double twice = 0;
    for (const gpoint3& t : triangles) {
        const auto at = [&](int i) {
            const Vec3& v = vertices[static_cast<std::size_t>(i)];
            return Vec3(v.x * xSpace, v.y * ySpace, v.z * zSpace);
        };
        const Vec3 normal = cross(at(t.second) - at(t.first), at(t.third) - at(t.first));
        twice += std::sqrt(dot(normal, normal));
    }
    return twice / 2;
}

double quorbin::enclosedVolume(const std::vector<Vec3>& vertices, const std::vector<gpoint3>& triangles,
                               double xSpace, double ySpace, double zSpace) {
    if (vertices.empty()) return 0;
    // Measured from one of its points, so that a small mesh far out loses no digits.
    const Vec3 origin = vertices.front();
    double sixfold = 0;
    for (const gpoint3& t : triangles) {
        const auto at = [&](int i) { return vertices[static_cast<std::size_t>(i)] - origin; };
        sixfold += dot(at(t.first), cross(at(t.second), at(t.third)));
    }
    return sixfold / 6 * xSpace * ySpace * zSpace;
}

double quorbin::surfaceArea(const Mesh& mesh) { return surfaceArea(mesh.vertices, mesh.triangles); }
double quorbin::enclosedVolume(const Mesh& mesh) { return enclosedVolume(mesh.vertices, mesh.triangles); }
