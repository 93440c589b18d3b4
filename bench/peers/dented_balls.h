#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

/// Four dented balls in an n x n x n grid, negative inside; close to a distance, but not one.
inline double blobs(double x, double y, double z, double n) {
    // 4 u v (u^2 - v^2) is sin(4 phi) sin^4(theta) on the unit sphere: smooth at the poles as well.
    const auto blob = [n](double dx, double dy, double dz, double radius) {
        const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
        if (length == 0) return -radius * n;
        const double u = dx / length, v = dy / length;
        return length - radius * n * (1 + 0.15 * 4 * u * v * (u * u - v * v));
    };
    return std::min(std::min(blob(x - 0.27 * n, y - 0.27 * n, z - 0.27 * n, 0.18),
                             blob(y - 0.70 * n, z - 0.30 * n, x - 0.73 * n, 0.15)),
                    std::min(blob(z - 0.66 * n, x - 0.30 * n, y - 0.74 * n, 0.12),
                             blob(x - 0.70 * n, y - 0.30 * n, z - 0.74 * n, 0.10)));
}

/// The field at all grid points, x running fastest.
template <class Iterator>
void fillBlobs(Iterator value, int n) {
    for (int z = 0; z < n; ++z)
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) *value++ = blobs(x, y, z, n);
}

inline std::size_t cube(int n) { return static_cast<std::size_t>(n) * n * n; }
