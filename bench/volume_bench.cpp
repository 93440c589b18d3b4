#include <cstring>
#include <vector>

#include "blobs.h"
#include "textbook/march.h"

namespace {

void report(benchmark::State& state) {
    state.counters["ns/point"] =
        benchmark::Counter(static_cast<double>(pointsOf(state)) * 1e-9,
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
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

BENCHMARK(plainCopyOfAVolume)->Apply(volumes);
BENCHMARK(volumeCurvatureStep)->Apply(volumes);
BENCHMARK(volumeImplicitStep)->Apply(volumes);
BENCHMARK(volumeMarch)->Apply(volumes);
BENCHMARK(volumeTextbookMarch)->Apply(volumes);
BENCHMARK(triangles)->Apply(volumes);

}  // namespace
