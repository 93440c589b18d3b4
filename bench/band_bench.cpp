#include <algorithm>
#include <cmath>

#include "fields.h"

namespace {

/// A handful of smooth shapes.
void fillShapes(FullLevelSet2D& grid, int size) {
    const double scale = size / 512.0;
    fill(grid, size, [=](int column, int row) {
        const double x = column / scale, y = row / scale;
        const auto disc = [&](double cx, double cy, double stretch, double radius) {
            const double dx = (x - cx) / stretch, dy = y - cy;
            return std::sqrt(dx * dx + dy * dy) - radius;
        };
        const double square = std::max(std::abs(x - 130) - 80, std::abs(y - 390) - 60);
        return scale *
               std::min({disc(150, 150, 1, 90), disc(380, 120, 1, 70), square, disc(370, 380, 1.5, 60)});
    });
}

template <class LevelSet>
void smoothAndContour(LevelSet& levelSet, int steps) {
    for (int step = 0; step < steps; ++step) {
        levelSet.moveAlongCurvature();
        levelSet.ensureSignedDistanceFMM();
    }
    std::vector<brin::Vec2<double>> points;
    std::vector<std::pair<int, int>> segments;
    levelSet.getLinesUnique(points, segments);
    benchmark::DoNotOptimize(points.data());
}

constexpr int kSteps = 20;

void twentyStepsOnABand(benchmark::State& state) {
    FullLevelSet2D grid;
    fillShapes(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        FastLevelSet2D band = quorbin::bandOf(grid);
        state.ResumeTiming();
        smoothAndContour(band, kSteps);
        state.counters["points"] = band.size();
    }
}

/// Two of the twenty, since the others take as long.
void twoStepsOnTheDenseGrid(benchmark::State& state) {
    FullLevelSet2D grid;
    fillShapes(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) smoothAndContour(grid, 2);
    state.counters["points"] = points(state);
}

void bandOfAGrid(benchmark::State& state) {
    FullLevelSet2D grid;
    fillShapes(grid, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const FastLevelSet2D band = quorbin::bandOf(grid);
        benchmark::DoNotOptimize(&band);
    }
    reportPerItem(state, points(state));
}

BENCHMARK(twentyStepsOnABand)->Arg(256)->Arg(512)->Arg(2048)->Arg(8192)->Unit(benchmark::kMillisecond);
BENCHMARK(bandOfAGrid)->Arg(256)->Arg(512)->Arg(2048)->Arg(8192)->Unit(benchmark::kMillisecond);
BENCHMARK(twoStepsOnTheDenseGrid)->Arg(256)->Arg(512)->Arg(2048)->Unit(benchmark::kMillisecond);

}  // namespace
