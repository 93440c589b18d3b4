#include <algorithm>
#include <vector>

#include "flows.h"
#include "grids.h"
#include "line.h"
#include "peers/measure.h"

namespace accuracy {

namespace {

/// Smallest seconds of several rounds, in which the two take turns, so that both meet the same machine.
struct Pair {
    double plain = HUGE_VAL, improved = HUGE_VAL;
};

template <class LevelSet, class Plain, class Improved>
Pair inTurn(const LevelSet& start, int rounds, Plain plain, Improved improved) {
    Pair pair;
    const auto time = [&](auto&& work, double& smallest) {
        LevelSet copy = copyOf(start);
        const Timer timer;
        work(copy);
        smallest = std::min(smallest, timer.seconds());
    };
    for (int round = 0; round < rounds; ++round) {
        time(plain, pair.plain);
        time(improved, pair.improved);
    }
    return pair;
}

void print(const char* subject, int dimensions, int n, const Pair& pair) {
    Line("time")
        .add("subject", subject)
        .add("dimensions", dimensions)
        .add("n", n)
        .add("plain_seconds", pair.plain)
        .add("improved_seconds", pair.improved)
        .add("ratio", pair.improved / pair.plain);
}

template <class Grid>
Grid paraboloid(int n) {
    return gridOf<Grid>(paraboloidAt(middle(n, dimensions(Grid())), 0.3 * n), n);
}

template <class Grid>
void distancesOf(int n) {
    const auto march = [](auto& levelSet) { levelSet.ensureSignedDistanceFMM(); };
    const auto feet = [](auto& levelSet) { quorbin::reinitialize(levelSet); };
    const Grid grid = paraboloid<Grid>(n);
    print("distance, dense", dimensions(grid), n, inTurn(grid, 5, march, feet));
    auto band = quorbin::bandOf(grid, true);
    print("distance, band", dimensions(grid), n, inTurn(band, 20, march, feet));
}

}  // namespace

void reinitializeTimes(int n2, int n3) {
    distancesOf<FullLevelSet2D>(n2);
    distancesOf<FullLevelSet3D>(n3);
}

void bandStepTimes(int n) {
    constexpr int kSteps = 20;
    FastLevelSet3D band;
    {
        const FullLevelSet3D grid = gridOf<FullLevelSet3D>(ballAt(middle(n, 3), 0.3 * n), n);
        band = quorbin::bandOf(grid, true);
    }
    const auto steps = [](FastLevelSet3D& moved) {
        for (int i = 0; i < kSteps; ++i) {
            moved.moveAlongCurvature();
            moved.ensureSignedDistanceFMM();
        }
    };
    int taken = 0;
    const auto flow = [&](FastLevelSet3D& moved) {
        taken = quorbin::curvatureFlow(moved, kSteps / 6.0).steps;
    };
    Pair pair = inTurn(band, 3, steps, flow);
    pair.plain /= kSteps;
    pair.improved /= std::max(taken, 1);
    print("curvature step, band", 3, n, pair);
}

void longFlowTimes(int n) {
    const double radius = 0.3 * n;
    const FullLevelSet2D disc = gridOf<FullLevelSet2D>(ballAt(middle(n, 2), radius), n);
    quorbin::CurvatureFlowOptions large;
    large.steps = quorbin::CurvatureFlowOptions::Steps::kLarge;
    double after = 0;
    const double time = radius * radius / 4;
    const Pair pair = inTurn(
        disc, 3, [](FullLevelSet2D& grid) { grid.ensureSignedDistanceFMM(); },
        [&](FullLevelSet2D& grid) {
            quorbin::curvatureFlow(grid, time, large);
            after = enclosed(grid);
        });
    print("disc to 1/√2 in large steps", 2, n, pair);
    Line("long flow")
        .add("dimensions", 2)
        .add("n", n)
        .add("method", "curvatureFlow, large")
        .add("excess_percent", 100 * ((enclosed(disc) - after) / (2 * kPi * time) - 1));
}

}  // namespace accuracy
