#include "smoothing.h"

#include <cmath>
#include <cstddef>

#include "band.h"
#include "distance.h"
#include "from_samples.h"
#include "unchanged.h"

namespace quorbin::fields {

namespace {

void step(FullLevelSet2D& levelSet, double implicitTime) {
    if (implicitTime == 0) return levelSet.moveAlongCurvature();
    levelSet.moveWithCurvatureImplicit(
        [](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& source) {
            k = 1;
            vx = vy = source = 0;
        },
        implicitTime, 0);
}

/// Steps for the time of explicit ones on the dense grid. A step strips a layer of three, so every second one
/// is followed by a reinitialisation. These err inwards, much like motion by curvature: four steps take the
/// time of five.
int stepsOnBand(const FullLevelSet2D& levelSet, int steps) {
    return hasEqualSpacings(levelSet) ? static_cast<int>(std::lround(0.8 * steps)) : steps;
}
int stepsOnBand(const FullLevelSet3D&, int steps) { return static_cast<int>(std::lround(0.8 * steps)); }

void stepOnBand(FastLevelSet2D& band, double) { band.moveAlongCurvature(); }
void stepOnBand(FastLevelSet3D& band, double implicitTime) {
    constexpr int kSweeps = 15;
    if (implicitTime == 0) return band.moveAlongCurvature();
    band.moveWithCurvatureImplicit(
        [](LevelSet3D*, int, int, int, double& k, double&, double&, double&, double&) { k = 1; },
        implicitTime, kSweeps);
}

template <std::size_t dimensions, class Grid>
int smoothOnBand(Grid& levelSet, const Smoothing& smoothing, const Progress& progress) {
    const bool isImplicit = smoothing.implicitTime > 0;
    const int count = isImplicit ? smoothing.steps : stepsOnBand(levelSet, smoothing.steps);
    const int reinitEvery = isImplicit ? 1 : 2;
    Band<dimensions> band(levelSet);
    for (int done = 1; done <= count; ++done) {
        stepOnBand(band.points(), smoothing.implicitTime);
        if ((done % reinitEvery == 0 || done == count) && !band.reinitialise()) return done;
        if (progress && !progress(done, count)) return kEnded;
    }
    band.copyTo(levelSet);
    return hasCrossing(levelSet) ? kStillThere : count;
}

void step(FullLevelSet3D& levelSet, double implicitTime) {
    implicitTime == 0 ? levelSet.moveAlongCurvature() : levelSet.moveAlongCurvatureImplicit();
}

template <class Grid, class MakeDistance>
int smoothGrid(Grid& levelSet, const Smoothing& smoothing, const Progress& progress,
               MakeDistance makeDistance) {
    UnchangedUnlessDone<Grid> guard(levelSet, progress && smoothing.restores);
    makeDistance(levelSet);
    for (int done = 1; done <= smoothing.steps; ++done) {
        step(levelSet, smoothing.implicitTime);
        if (done % smoothing.reinitEvery == 0 || done == smoothing.steps) {
            if (!hasCrossing(levelSet)) {
                guard.done();
                return done;
            }
            makeDistance(levelSet);
        }
        if (progress && !progress(done, smoothing.steps)) return kEnded;
    }
    guard.done();
    return kStillThere;
}

}  // namespace

int smooth(FullLevelSet2D& levelSet, const Smoothing& smoothing, const Progress& progress) {
    if (smoothing.onBand) return smoothOnBand<2>(levelSet, smoothing, progress);
    return smoothGrid(levelSet, smoothing, progress, [](FullLevelSet2D& field) {
        hasEqualSpacings(field) ? distanceBySegments(field) : distanceByMarching(field);
    });
}

int smooth(FullLevelSet3D& levelSet, const Smoothing& smoothing, const Progress& progress) {
    if (smoothing.onBand) return smoothOnBand<3>(levelSet, smoothing, progress);
    return smoothGrid(levelSet, smoothing, progress,
                      [](FullLevelSet3D& field) { field.ensureSignedDistanceFMM(); });
}

}  // namespace quorbin::fields
