#include "methods.h"

#include <cmath>

#include <quorbin.h>

#include "grids.h"
#include "peers/measure.h"

namespace accuracy {

namespace {

using Steps = quorbin::CurvatureFlowOptions::Steps;

template <class Work>
double secondsOf(Work&& work) {
    const Timer timer;
    work();
    return timer.seconds();
}

template <class Grid, class Distance>
DistanceMethod<Grid> onGrid(const char* name, Distance distance, bool takesAnySpacings = true) {
    return {name, takesAnySpacings, [distance](Grid& grid) { return secondsOf([&] { distance(grid); }); }};
}

template <class Grid, class Distance>
DistanceMethod<Grid> onBand(const char* name, Distance distance) {
    return {name, true, [distance](Grid& grid) {
                auto band = wideBandOf(grid);
                const double seconds = secondsOf([&] { distance(band); });
                writeBack(band, grid);
                return seconds;
            }};
}

/// Steps of moveAlongCurvature with a distance after each so many; the last one always.
template <class LevelSet, class Distance>
Motion stepByStep(LevelSet& levelSet, double step, double time, int every, Distance distance) {
    Motion motion;
    motion.steps = static_cast<int>(std::lround(time / step));
    motion.time = motion.steps * step;
    motion.seconds = secondsOf([&] {
        for (int i = 1; i <= motion.steps; ++i) {
            levelSet.moveAlongCurvature();
            if (i % every == 0 || i == motion.steps) distance(levelSet);
        }
    });
    return motion;
}

template <class Grid, class Distance>
CurvatureMethod<Grid> stepsOnGrid(const char* name, int every, Distance distance,
                                  bool takesAnySpacings = true) {
    return {name, takesAnySpacings, [=](Grid& grid, double time) {
                return stepByStep(grid, stepLimit(grid), time, every, distance);
            }};
}

template <class LevelSet>
Motion flow(LevelSet& levelSet, double time, Steps steps) {
    quorbin::CurvatureFlowOptions options;
    options.steps = steps;
    const Timer timer;
    const auto result = quorbin::curvatureFlow(levelSet, time, options);
    return {result.time, result.steps, timer.seconds()};
}

template <class Grid>
CurvatureMethod<Grid> flowOnGrid(const char* name, Steps steps) {
    return {name, true, [steps](Grid& grid, double time) { return flow(grid, time, steps); }};
}

const auto march = [](auto& levelSet) { levelSet.ensureSignedDistanceFMM(); };
const auto segments = [](FullLevelSet2D& grid) { grid.ensureSignedDistance(); };
const auto feet = [](auto& levelSet) { quorbin::reinitialize(levelSet); };

}  // namespace

template <class Grid>
DistanceMethods<Grid> libraryDistances() {
    DistanceMethods<Grid> methods{onGrid<Grid>("march", march)};
    if constexpr (std::is_same_v<Grid, FullLevelSet2D>)
        methods.push_back(onGrid<Grid>("segments", segments, false));
    methods.push_back(onBand<Grid>("march, band", march));
    methods.push_back(onGrid<Grid>("reinitialize", feet));
    methods.push_back(onBand<Grid>("reinitialize, band", feet));
    return methods;
}

template <class Grid>
CurvatureMethods<Grid> libraryMotions() {
    CurvatureMethods<Grid> methods{stepsOnGrid<Grid>("steps, march after each", 1, march),
                                   stepsOnGrid<Grid>("steps, march after ten", 10, march)};
    if constexpr (std::is_same_v<Grid, FullLevelSet2D>) {
        methods.push_back(stepsOnGrid<Grid>("steps, segments after each", 1, segments, false));
        methods.push_back(stepsOnGrid<Grid>("steps, segments after ten", 10, segments, false));
    }
    methods.push_back(stepsOnGrid<Grid>("steps, reinitialize after each", 1, feet));
    methods.push_back(stepsOnGrid<Grid>("steps, reinitialize after ten", 10, feet));
    methods.push_back({"steps, march after each, band", true, [](Grid& grid, double time) {
                           auto band = quorbin::bandOf(grid);
                           const Motion motion = stepByStep(band, 0.95 * stepLimit(grid), time, 1, march);
                           writeBack(band, grid);
                           return motion;
                       }});
    methods.push_back(flowOnGrid<Grid>("curvatureFlow, explicit", Steps::kExplicit));
    methods.push_back(flowOnGrid<Grid>("curvatureFlow, large", Steps::kLarge));
    methods.push_back({"curvatureFlow, band", true, [](Grid& grid, double time) {
                           auto band = wideBandOf(grid);
                           const Motion motion = flow(band, time, Steps::kExplicit);
                           writeBack(band, grid);
                           return motion;
                       }});
    return methods;
}

template DistanceMethods<FullLevelSet2D> libraryDistances();
template DistanceMethods<FullLevelSet3D> libraryDistances();
template CurvatureMethods<FullLevelSet2D> libraryMotions();
template CurvatureMethods<FullLevelSet3D> libraryMotions();

}  // namespace accuracy
