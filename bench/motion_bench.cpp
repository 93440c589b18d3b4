#include <cstring>
#include <vector>

#include "fields.h"

namespace {

struct AnySubclass : FullLevelSet2D {};

template <class Grid>
void curvatureStep(benchmark::State& state) {
    Grid grid;
    fillDiscs(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        grid.moveAlongCurvature();
        benchmark::DoNotOptimize(grid.data());
        benchmark::ClobberMemory();
    }
    reportPerItem(state, points(state));
}

void curvatureStepOtherSpacing(benchmark::State& state) {
    FullLevelSet2D grid;
    const int size = static_cast<int>(state.range(0));
    fillDiscs(grid, size);
    FullLevelSet2D spaced;
    spaced.init(size, size, 0.7, 1.3);
    std::memcpy(spaced.data(), grid.data(),
                sizeof(double) * static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (auto _ : state) {
        spaced.moveAlongCurvature();
        benchmark::DoNotOptimize(spaced.data());
        benchmark::ClobberMemory();
    }
    reportPerItem(state, points(state));
}

/// What the step is measured by: the same bytes read and written, and nothing done to them.
void plainCopy(benchmark::State& state) {
    std::vector<double> from(static_cast<std::size_t>(points(state)), 1.0), to(from.size());
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size() * sizeof(double));
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
    reportPerItem(state, points(state));
}

void speedStep(benchmark::State& state) {
    FullLevelSet2D grid;
    fillDiscs(grid, static_cast<int>(state.range(0)));
    const boost::function<double(LevelSet2D*, int, int, double*)> curvature = [](LevelSet2D* levelSet, int x,
                                                                                 int y, double* limit) {
        *limit = 0.25;
        return levelSet->getCurvature(x, y);
    };
    for (auto _ : state) grid.moveWithCurvature(curvature);
    reportPerItem(state, points(state));
}

BENCHMARK(plainCopy)->Apply(sizes);
BENCHMARK(curvatureStep<FullLevelSet2D>)->Apply(sizes);
BENCHMARK(curvatureStepOtherSpacing)->Apply(sizes);
BENCHMARK(curvatureStep<AnySubclass>)->Apply(sizes);
BENCHMARK(speedStep)->Apply(sizes);

}  // namespace
