#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

namespace {

using Steps = quorbin::CurvatureFlowOptions::Steps;

template <class Grid>
void keep(const char* name, const Shape& shape, int n, double time) {
    const Grid start = gridOf<Grid>(shape, n);
    for (const Steps steps : {Steps::kExplicit, Steps::kLarge}) {
        Grid grid = copyOf(start);
        quorbin::CurvatureFlowOptions options;
        options.steps = steps;
        options.keepsSize = true;
        const auto result = quorbin::curvatureFlow(grid, time, options);
        Line("constant size")
            .add("dimensions", dimensions(start))
            .add("n", n)
            .add("shape", name)
            .add("method", steps == Steps::kExplicit ? "curvatureFlow, explicit" : "curvatureFlow, large")
            .add("change_percent", 100 * (enclosed(grid) / enclosed(start) - 1))
            .add("steps", result.steps);
    }
}

}  // namespace

void constantSize(int n2, int n3) {
    const double unit2 = n2 / 128.0, unit3 = n3 / 64.0;
    const Point flat = middle(n2, 2), solid = middle(n3, 3);
    const double time2 = 200 * unit2 * unit2, time3 = 20 * unit3 * unit3;
    keep<FullLevelSet2D>("disc", ballAt(flat, 40 * unit2), n2, time2);
    keep<FullLevelSet2D>("star", starAt(flat, 25 * unit2, 8 * unit2), n2, time2);
    keep<FullLevelSet2D>("square", cubeAt(flat, 30.3 * unit2), n2, time2);
    keep<FullLevelSet3D>("ball", ballAt(solid, 20 * unit3), n3, time3);
    keep<FullLevelSet3D>("cube", cubeAt(solid, 15.3 * unit3), n3, time3);
}

}  // namespace accuracy
