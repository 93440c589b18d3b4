#include "fields.h"

namespace {

using Fill = void (*)(FullLevelSet2D&, int);
using Extract = void (FullLevelSet2D::*)(std::vector<brin::Vec2<double>>&,
                                         std::vector<std::pair<int, int>>&) const;

/// Into fresh vectors each time, as a caller has them.
void extract(benchmark::State& state, Fill make, Extract lines) {
    FullLevelSet2D grid;
    make(grid, static_cast<int>(state.range(0)));
    double segmentCount = 0;
    for (auto _ : state) {
        std::vector<brin::Vec2<double>> points;
        std::vector<std::pair<int, int>> segments;
        (grid.*lines)(points, segments);
        segmentCount = static_cast<double>(segments.size());
    }
    reportPerItem(state, points(state), "ns/cell");
    state.counters["segments"] = segmentCount;
}

BENCHMARK_CAPTURE(extract, lines_discs, fillDiscs, &FullLevelSet2D::getLines)->Apply(sizes);
BENCHMARK_CAPTURE(extract, lines_noise, fillNoise, &FullLevelSet2D::getLines)->Apply(sizes);
BENCHMARK_CAPTURE(extract, unique_discs, fillDiscs, &FullLevelSet2D::getLinesUnique)->Apply(sizes);
BENCHMARK_CAPTURE(extract, unique_noise, fillNoise, &FullLevelSet2D::getLinesUnique)->Apply(sizes);

}  // namespace
