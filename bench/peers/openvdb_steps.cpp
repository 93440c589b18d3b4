#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <openvdb/openvdb.h>
#include <openvdb/tools/LevelSetFilter.h>
#include <openvdb/tools/SignedFloodFill.h>
#include <openvdb/tools/VolumeToMesh.h>
#include <tbb/global_control.h>

#include "dented_balls.h"
#include "measure.h"

namespace {

constexpr int steps = 20;
constexpr float halfWidth = 3;

using Filter = openvdb::tools::LevelSetFilter<openvdb::FloatGrid>;

/// The points nearer than the half width; all others only have a sign, which the flood fill spreads.
openvdb::FloatGrid::Ptr toGrid(const std::vector<double>& field, int n) {
    auto grid = openvdb::FloatGrid::create(halfWidth);
    grid->setGridClass(openvdb::GRID_LEVEL_SET);
    auto access = grid->getAccessor();
    const double* value = field.data();
    for (int z = 0; z < n; ++z)
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x, ++value)
                if (std::abs(*value) < halfWidth) access.setValue({x, y, z}, static_cast<float>(*value));
    openvdb::tools::signedFloodFill(grid->tree());
    return grid;
}

void timeSteps(const openvdb::FloatGrid& start, const char* name, void (*step)(Filter&)) {
    auto grid = start.deepCopy();
    resetPeak();
    const double before = memory("VmRSS");
    const Timer timer;
    Filter filter(*grid);
    filter.setGrainSize(0);
    for (int i = 0; i < steps; ++i) step(filter);
    const double ms = timer.seconds() * 1e3, cpu = timer.cpuSeconds() * 1e3;
    std::printf(
        "    %-14s %.1f ms, each %.2f (cpu %.1f)  active voxels after %.0f  peak RSS %.1f MB, %.1f over "
        "the start  scheme %s %s normCount %d\n",
        name, ms, ms / steps, cpu, static_cast<double>(grid->activeVoxelCount()), memory("VmHWM") / 1e6,
        (memory("VmHWM") - before) / 1e6,
        openvdb::math::biasedGradientSchemeToString(filter.getSpatialScheme()).c_str(),
        openvdb::math::temporalIntegrationSchemeToString(filter.getTemporalScheme()).c_str(),
        filter.getNormCount());
}

void run(int n) {
    openvdb::FloatGrid::Ptr grid;
    {
        std::vector<double> field(cube(n));
        fillBlobs(field.begin(), n);
        const Timer timer;
        grid = toGrid(field, n);
        std::printf("openvdb  n %d\n    conversion     %.1f ms  active voxels %.0f  tree %.1f MB\n", n,
                    timer.seconds() * 1e3, static_cast<double>(grid->activeVoxelCount()),
                    static_cast<double>(grid->memUsage()) / 1e6);
    }

    // The first round also pays for fresh pages from the system, so it is not one to compare.
    timeSteps(*grid, "warm-up", [](Filter& filter) { filter.laplacian(); });
    timeSteps(*grid, "laplacian", [](Filter& filter) { filter.laplacian(); });
    timeSteps(*grid, "meanCurvature", [](Filter& filter) { filter.meanCurvature(); });

    timeSteps(*grid, "cheap tracking", [](Filter& filter) {
        filter.setSpatialScheme(openvdb::math::FIRST_BIAS);
        filter.setNormCount(1);
        filter.laplacian();
    });

    std::vector<openvdb::Vec3s> vertices;
    std::vector<openvdb::Vec3I> triangles;
    std::vector<openvdb::Vec4I> quads;
    resetPeak();
    const Timer timer;
    openvdb::tools::volumeToMesh(*grid, vertices, triangles, quads, 0.0, 0.0);
    std::printf("    mesh           %.1f ms  vertices %zu  quads %zu  triangles %zu  peak RSS %.1f MB\n",
                timer.seconds() * 1e3, vertices.size(), quads.size(), triangles.size(),
                memory("VmHWM") / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
    const tbb::global_control serial(tbb::global_control::max_allowed_parallelism, 1);
    openvdb::initialize();
    run(argc > 1 ? std::atoi(argv[1]) : 256);
}
