#pragma once

#include <quorbin3d.h>

#include "quorbin2d/dense_support.h"

/// Any subclass: nothing is overridden, and yet the library must read it through its slots.
struct SlowVolume : FullLevelSet3D {
    using FullLevelSet3D::operator=;
};

struct Size3D {
    int width, height, depth;
};

template <class F>
void fill(FullLevelSet3D& grid, Size3D size, F f, double hx = 1, double hy = 1, double hz = 1) {
    grid.init(size.width, size.height, size.depth, hx, hy, hz);
    for (int z = 0; z < size.depth; ++z)
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) grid(x, y, z) = f(x, y, z);
}

inline std::vector<std::uint64_t> bits(const FullLevelSet3D& grid) {
    return bits(grid.data(), static_cast<std::size_t>(grid.getWidth()) *
                                 static_cast<std::size_t>(grid.getHeight()) *
                                 static_cast<std::size_t>(grid.getDepth()));
}
inline std::vector<std::uint64_t> bits(const std::vector<brin::Vec3<double>>& points) {
    return bits(reinterpret_cast<const double*>(points.data()), 3 * points.size());
}

/// Calls check(dense, slow) with the same field in both: noise, small integers and balls, many sizes and
/// spacings.
template <class Check>
void onVolumePairs(Check check) {
    std::mt19937 random(17);
    std::uniform_real_distribution<double> real(-1.0, 1.0);
    std::uniform_int_distribution<int> integer(-2, 2);
    const double spacings[][3] = {{1, 1, 1}, {0.5, 2, 1}, {0.7, 1.3, 2.9}, {1, 1, 10}};
    for (const Size3D size :
         {Size3D{1, 1, 1}, {2, 3, 1}, {1, 4, 5}, {2, 2, 2}, {9, 5, 6}, {17, 8, 3}, {12, 13, 14}})
        for (const auto& [hx, hy, hz] : spacings)
            for (const int kind : {0, 1, 2}) {
                FullLevelSet3D dense;
                SlowVolume slow;
                fill(
                    dense, size,
                    [&](int x, int y, int z) {
                        if (kind == 0) return real(random);
                        if (kind == 1) return double(integer(random));
                        return std::hypot(x - 0.4 * size.width, y - 0.5 * size.height, z - 0.6 * size.depth) -
                               0.3 * size.width;
                    },
                    hx, hy, hz);
                slow = dense;
                check(dense, slow);
            }
}
