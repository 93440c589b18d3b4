#include "fields.h"

namespace {

void polygons(benchmark::State& state) {
    FullLevelSet2D grid;
    fillNoise(grid, static_cast<int>(state.range(0)));
    std::vector<brin::Vec2<double>> contourPoints;
    std::vector<std::pair<int, int>> segments;
    grid.getLinesUnique(contourPoints, segments);
    for (auto _ : state) {
        const auto found = getPolygons(contourPoints, segments);
        benchmark::DoNotOptimize(found.data());
    }
    const auto count = static_cast<double>(segments.size());
    reportPerItem(state, count, "ns/segment");
    state.counters["segments"] = count;
}

void uniquePoints(benchmark::State& state) {
    FullLevelSet2D grid;
    fillNoise(grid, static_cast<int>(state.range(0)));
    std::vector<brin::Vec2<double>> soup;
    std::vector<std::pair<int, int>> soupSegments;
    grid.getLines(soup, soupSegments);
    for (auto _ : state) {
        state.PauseTiming();
        auto contourPoints = soup;
        auto segments = soupSegments;
        state.ResumeTiming();
        getUniquePoints(contourPoints, segments);
    }
    reportPerItem(state, static_cast<double>(soup.size()));
}

void segmentSizes(benchmark::internal::Benchmark* b) {
    b->Arg(256)->Arg(1024)->Arg(2048)->Unit(benchmark::kMillisecond);
}

BENCHMARK(polygons)->Apply(segmentSizes);
BENCHMARK(uniquePoints)->Apply(segmentSizes);

}  // namespace
