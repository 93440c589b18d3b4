#pragma once

#include <cmath>
#include <cstdint>
#include <random>

#include <benchmark/benchmark.h>

#include <quorbin2d.h>

/// Fills a grid with f(x, y).
template <class F>
void fill(FullLevelSet2D& grid, int size, F f) {
    grid.init(size, size, 1.0, 1.0);
    double* value = grid.data();
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) *value++ = f(x, y);
}

/// Sixteen disjoint discs, close to a signed distance.
inline void fillDiscs(FullLevelSet2D& grid, int size) {
    const double tile = size / 4.0;
    fill(grid, size, [=](int x, int y) {
        return std::hypot(std::fmod(x, tile) - tile / 2, std::fmod(y, tile) - tile / 2) - 0.35 * tile;
    });
}

/// Noise: nearly every cell is crossed.
inline void fillNoise(FullLevelSet2D& grid, int size) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    fill(grid, size, [&](int, int) { return value(random); });
}

/// Reports nanoseconds for each of count items an iteration.
inline void reportPerItem(benchmark::State& state, double count, const char* name = "ns/point") {
    state.counters[name] = benchmark::Counter(
        count * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

inline double points(const benchmark::State& state) {
    return static_cast<double>(state.range(0)) * static_cast<double>(state.range(0));
}

inline void sizes(benchmark::internal::Benchmark* b) {
    b->Arg(256)->Arg(1024)->Arg(2048)->Arg(4096)->Unit(benchmark::kMillisecond);
}
