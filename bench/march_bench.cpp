#include <algorithm>
#include <vector>

#include "fields.h"
#include "textbook/march.h"

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

/// The same field each time. check looks at the field and at what has become of it.
template <class Check>
void reinitialise(benchmark::State& state, Fill make, Reinitialise operation, Check check) {
    const int size = static_cast<int>(state.range(0));
    const std::vector<double> field = makeField(make, size);
    FullLevelSet2D grid;
    grid.init(size, size, 1.0, 1.0);
    for (auto _ : state) {
        state.PauseTiming();
        std::copy(field.begin(), field.end(), grid.data());
        state.ResumeTiming();
        (grid.*operation)();
    }
    check(field, grid);
    reportPerItem(state, points(state));
}

void segments(benchmark::State& state, Fill make, Reinitialise operation) {
    reinitialise(state, make, operation, [](const auto&, const auto&) {});
}

void march(benchmark::State& state, Fill make) {
    const auto check = [&](const std::vector<double>& field, const FullLevelSet2D& grid) {
        const std::vector<double> expected =
            textbookMarch(field, grid.getWidth(), grid.getHeight(), 1.0, 1.0);
        if (!std::equal(expected.begin(), expected.end(), grid.data()))
            state.SkipWithError("differs from the textbook march");
    };
    reinitialise(state, make, &FullLevelSet2D::ensureSignedDistanceFMM, check);
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
