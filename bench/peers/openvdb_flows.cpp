#include <cmath>

#include <openvdb/openvdb.h>
#include <openvdb/tools/LevelSetFilter.h>
#include <openvdb/tools/SignedFloodFill.h>
#include <tbb/global_control.h>

#include "accuracy/grids.h"
#include "measure.h"
#include "peer_flows.h"

namespace {

using accuracy::Motion;
using Filter = openvdb::tools::LevelSetFilter<openvdb::FloatGrid>;
using openvdb::math::BiasedGradientScheme;

/// The values below three samples; all others only have a sign, which the flood fill spreads.
openvdb::FloatGrid::Ptr toLevelSet(const FullLevelSet3D& grid) {
    constexpr float halfWidth = 3;
    auto levelSet = openvdb::FloatGrid::create(halfWidth);
    levelSet->setGridClass(openvdb::GRID_LEVEL_SET);
    auto access = levelSet->getAccessor();
    accuracy::visitIndices(grid, [&](std::ptrdiff_t i, int x, int y, int z) {
        const auto value = static_cast<float>(grid.data()[i]);
        if (std::abs(value) < halfWidth) access.setValue({x, y, z}, value);
    });
    openvdb::tools::signedFloodFill(levelSet->tree());
    return levelSet;
}

void copyBack(const openvdb::FloatGrid& levelSet, FullLevelSet3D& grid) {
    auto access = levelSet.getConstAccessor();
    accuracy::visitIndices(grid, [&](std::ptrdiff_t i, int x, int y, int z) {
        float value = 0;
        const bool isActive = access.probeValue({x, y, z}, value);
        grid.data()[i] = isActive ? value : std::copysign(HUGE_VAL, value);
    });
}

/// Seconds of what is done to the level set of a grid, whose result goes back into it.
template <class Work>
double apply(FullLevelSet3D& grid, BiasedGradientScheme scheme, Work&& work) {
    const auto levelSet = toLevelSet(grid);
    Filter filter(*levelSet);
    filter.setGrainSize(0);
    filter.setSpatialScheme(scheme);
    const Timer timer;
    work(filter);
    const double seconds = timer.seconds();
    copyBack(*levelSet, grid);
    return seconds;
}

accuracy::DistanceMethod<FullLevelSet3D> normalize(const char* name, BiasedGradientScheme scheme) {
    return {name, false, [scheme](FullLevelSet3D& grid) {
                return apply(grid, scheme, [](Filter& filter) { filter.normalize(); });
            }};
}

/// A step of its mean-curvature flow is of dx²/3, by the mean of the two curvatures: a sixth, by their sum.
accuracy::CurvatureMethod<FullLevelSet3D> meanCurvature(const char* name, BiasedGradientScheme scheme,
                                                        int normCount) {
    return {name, false, [=](FullLevelSet3D& grid, double time) {
                Motion motion;
                motion.steps = static_cast<int>(std::lround(time * 6));
                motion.time = motion.steps / 6.0;
                motion.seconds = apply(grid, scheme, [&](Filter& filter) {
                    filter.setNormCount(normCount);
                    for (int i = 0; i < motion.steps; ++i) filter.meanCurvature();
                });
                return motion;
            }};
}

}  // namespace

int main() {
    const tbb::global_control serial(tbb::global_control::max_allowed_parallelism, 1);
    openvdb::initialize();
    measurePeer<FullLevelSet3D>(
        {normalize("OpenVDB normalize, WENO5", openvdb::math::HJWENO5_BIAS),
         normalize("OpenVDB normalize, first order", openvdb::math::FIRST_BIAS)},
        {meanCurvature("OpenVDB meanCurvature, WENO5", openvdb::math::HJWENO5_BIAS, 3),
         meanCurvature("OpenVDB meanCurvature, first order, one iteration", openvdb::math::FIRST_BIAS, 1)});
}
