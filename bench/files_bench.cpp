#include <cstdio>

#include "fields.h"

namespace {

constexpr char kPath[] = "quorbin_bench.fl2d";

void save(benchmark::State& state) {
    FullLevelSet2D grid;
    fillNoise(grid, static_cast<int>(state.range(0)));
    for (auto _ : state)
        if (!grid.save(kPath)) state.SkipWithError("cannot write");
    std::remove(kPath);
    reportPerItem(state, points(state));
}

void load(benchmark::State& state) {
    FullLevelSet2D grid;
    fillNoise(grid, static_cast<int>(state.range(0)));
    if (!grid.save(kPath)) state.SkipWithError("cannot write");
    for (auto _ : state)
        if (!grid.load(kPath)) state.SkipWithError("cannot read");
    std::remove(kPath);
    reportPerItem(state, points(state));
}

BENCHMARK(save)->Apply(sizes);
BENCHMARK(load)->Apply(sizes);

}  // namespace
