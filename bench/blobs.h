#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <benchmark/benchmark.h>

#include <quorbin3d.h>

inline std::size_t pointsOf(const benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    return n * n * n;
}

/// Two smooth blobs.
inline void fillBlobs(FullLevelSet3D& grid, int size) {
    grid.init(size, size, size, 1, 1, 1);
    const double scale = size / 256.0;
    double* value = grid.data();
    for (int z = 0; z < size; ++z)
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const auto ball = [&](double cx, double cy, double cz, double stretch, double radius) {
                    const double dx = x - cx * scale, dy = (y - cy * scale) / stretch, dz = z - cz * scale;
                    return std::sqrt(dx * dx + dy * dy + dz * dz) - radius * scale;
                };
                *value++ = std::min(ball(90, 100, 110, 1, 60), ball(180, 170, 150, 1.2, 50));
            }
}

inline void volumes(benchmark::internal::Benchmark* b) {
    b->ArgName("side")->Arg(64)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);
}
