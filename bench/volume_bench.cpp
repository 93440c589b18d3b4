#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

#include <quorbin3d.h>

#include "textbook_march.h"

namespace {

std::size_t pointsOf(const benchmark::State& state) {
    const auto n = static_cast<std::size_t>(state.range(0));
    return n * n * n;
}

void report(benchmark::State& state) {
    state.counters["ns/point"] =
        benchmark::Counter(static_cast<double>(pointsOf(state)) * 1e-9,
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Two smooth blobs.
void fillBlobs(FullLevelSet3D& grid, int size) {
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

void plainCopyOfAVolume(benchmark::State& state) {
    std::vector<double> from(pointsOf(state), 1.0), to(from.size());
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size() * sizeof(double));
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    report(state);
}

void volumeCurvatureStep(benchmark::State& state) {
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) grid.moveAlongCurvature();
    report(state);
}

void volumeImplicitStep(benchmark::State& state) {
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) grid.moveAlongCurvatureImplicit();
    report(state);
}

void volumeMarch(benchmark::State& state) {
    FullLevelSet3D grid;
    for (auto _ : state) {
        state.PauseTiming();
        fillBlobs(grid, static_cast<int>(state.range(0)));
        state.ResumeTiming();
        grid.ensureSignedDistanceFMM();
    }
    report(state);
}

void volumeTextbookMarch(benchmark::State& state) {
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    std::vector<double> distances;
    for (auto _ : state) distances = textbookMarch(grid);
    report(state);
    grid.ensureSignedDistanceFMM();
    if (std::memcmp(distances.data(), grid.data(), distances.size() * sizeof(double)) != 0)
        state.SkipWithError("the two marches differ");
}

void triangles(benchmark::State& state) {
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    std::vector<brin::Vec3<double>> vertices, normals;
    std::vector<gpoint3> made;
    for (auto _ : state) grid.getTriangles(vertices, normals, made);
    report(state);
    state.counters["triangles"] = static_cast<double>(made.size());
}

void volumes(benchmark::internal::Benchmark* b) {
    b->ArgName("side")->Arg(64)->Arg(128)->Arg(256)->Unit(benchmark::kMillisecond);
}

BENCHMARK(plainCopyOfAVolume)->Apply(volumes);
BENCHMARK(volumeCurvatureStep)->Apply(volumes);
BENCHMARK(volumeImplicitStep)->Apply(volumes);
BENCHMARK(volumeMarch)->Apply(volumes);
BENCHMARK(volumeTextbookMarch)->Apply(volumes);
BENCHMARK(triangles)->Apply(volumes);

}  // namespace
