#include <vector>

#include "blobs.h"

namespace {

void volumeBandOfAGrid(benchmark::State& state) {
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        FastLevelSet3D band = quorbin::bandOf(grid);
        state.counters["points"] = band.size();
    }
}

FastLevelSet3D bandOfBlobs(const benchmark::State& state) {
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    return quorbin::bandOf(grid);
}

void volumeBandCurvatureStep(benchmark::State& state) {
    const FastLevelSet3D start = bandOfBlobs(state);
    FastLevelSet3D band = start;
    for (auto _ : state) {
        band.moveAlongCurvature();
        state.PauseTiming();
        band = start;
        state.ResumeTiming();
    }
    state.counters["points"] = start.size();
}

void volumeBandMarch(benchmark::State& state) {
    FastLevelSet3D band = bandOfBlobs(state);
    for (auto _ : state) band.ensureSignedDistanceFMM();
    state.counters["points"] = band.size();
}

void volumeBandImplicitStep(benchmark::State& state) {
    FastLevelSet3D band = bandOfBlobs(state);
    for (auto _ : state)
        band.moveWithCurvatureImplicit(
            [](LevelSet3D*, int, int, int, double& k, double&, double&, double&, double&) { k = 1; }, 1, 15);
    state.counters["points"] = band.size();
}

void volumeBandTriangles(benchmark::State& state) {
    FastLevelSet3D band = bandOfBlobs(state);
    std::vector<brin::Vec3<double>> vertices, normals;
    std::vector<gpoint3> triangles;
    for (auto _ : state) band.getTriangles(vertices, normals, triangles);
    state.counters["triangles"] = static_cast<double>(triangles.size());
}

/// What a user does: steps, each of which is reinitialised, and then the mesh.
void volumeBandTwentySteps(benchmark::State& state) {
    constexpr int kSteps = 20;
    FullLevelSet3D grid;
    fillBlobs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        FastLevelSet3D band = quorbin::bandOf(grid);
        for (int step = 0; step < kSteps; ++step) {
            band.moveAlongCurvature();
            band.ensureSignedDistanceFMM();
        }
        std::vector<brin::Vec3<double>> vertices, normals;
        std::vector<gpoint3> triangles;
        quorbin::getTrianglesUnique(band, vertices, normals, triangles);
        benchmark::DoNotOptimize(triangles.data());
        state.counters["points"] = band.size();
    }
}

BENCHMARK(volumeBandOfAGrid)->Apply(volumes);
BENCHMARK(volumeBandCurvatureStep)->Apply(volumes);
BENCHMARK(volumeBandMarch)->Apply(volumes);
BENCHMARK(volumeBandImplicitStep)->Apply(volumes);
BENCHMARK(volumeBandTriangles)->Apply(volumes);
BENCHMARK(volumeBandTwentySteps)->Apply(volumes);

}  // namespace
