#include <algorithm>
#include <vector>

#include "fields.h"
#include "textbook_march.h"

namespace {

using Fill = void (*)(FullLevelSet2D&, int);

std::vector<double> makeField(Fill make, int size) {
    FullLevelSet2D grid;
    make(grid, size);
    std::vector<double> field(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    std::copy_n(grid.data(), field.size(), field.begin());
    return field;
}

using Reinitialise = void (FullLevelSet2D::*)();

void segments(benchmark::State& state, Fill make, Reinitialise reinitialise) {
    const int size = static_cast<int>(state.range(0));
    const std::vector<double> field = makeField(make, size);
    FullLevelSet2D grid;
    grid.init(size, size, 1.0, 1.0);
    for (auto _ : state) {
        state.PauseTiming();
        std::copy(field.begin(), field.end(), grid.data());
        state.ResumeTiming();
        (grid.*reinitialise)();
    }
    reportPerItem(state, points(state));
}

void march(benchmark::State& state, Fill make) {
    const int size = static_cast<int>(state.range(0));
    const std::vector<double> field = makeField(make, size);
    FullLevelSet2D grid;
    grid.init(size, size, 1.0, 1.0);
    for (auto _ : state) {
        state.PauseTiming();
        std::copy(field.begin(), field.end(), grid.data());
        state.ResumeTiming();
        grid.ensureSignedDistanceFMM();
    }
    if (std::vector<double>(grid.data(), grid.data() + field.size()) !=
        textbookMarch(field, size, size, 1.0, 1.0))
        state.SkipWithError("differs from the textbook march");
    reportPerItem(state, points(state));
}

void textbook(benchmark::State& state, Fill make) {
    const int size = static_cast<int>(state.range(0));
    const std::vector<double> field = makeField(make, size);
    for (auto _ : state) {
        const std::vector<double> distances = textbookMarch(field, size, size, 1.0, 1.0);
        benchmark::DoNotOptimize(distances.data());
    }
    reportPerItem(state, points(state));
}

BENCHMARK_CAPTURE(march, discs, fillDiscs)->Apply(sizes);
BENCHMARK_CAPTURE(textbook, discs, fillDiscs)->Apply(sizes);
BENCHMARK_CAPTURE(march, noise, fillNoise)->Apply(sizes);
BENCHMARK_CAPTURE(textbook, noise, fillNoise)->Apply(sizes);

BENCHMARK_CAPTURE(segments, sweeps_discs, fillDiscs, &FullLevelSet2D::ensureSignedDistance)->Apply(sizes);
BENCHMARK_CAPTURE(segments, brute_discs, fillDiscs, &FullLevelSet2D::ensureSignedDistanceBrute)->Apply(sizes);

}  // namespace
