#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

namespace {

/// What falls by `rate` in unit time: the area, by 2π, or in 3D the square of the radius, by 4.
double falling(const FullLevelSet2D& grid) { return enclosed(grid); }
double falling(const FullLevelSet3D& grid) { return std::pow(enclosed(grid) * 3 / (4 * kPi), 2.0 / 3); }

template <class Grid>
void halve(const CurvatureMethods<Grid>& methods, const char* name, const Shape& shape, int n,
           double stretch) {
    Grid start = gridOf<Grid>(shape, n, stretch);
    quorbin::reinitialize(start);
    const int dim = dimensions(start);
    const double before = falling(start), rate = dim == 2 ? 2 * kPi : 4;
    for (const auto& method : methods) {
        if (stretch != 1 && !method.takesAnySpacings) continue;
        Grid grid = copyOf(start);
        const Motion motion = method.move(grid, before / 2 / rate);
        const double limits = motion.time / stepLimit(start);
        Line("curvature")
            .add("dimensions", dim)
            .add("n", n)
            .add("shape", name)
            .add("stretch", stretch)
            .add("method", method.name)
            .add("excess_percent", 100 * ((before - falling(grid)) / (rate * motion.time) - 1))
            .add("steps", motion.steps)
            .add("mean_step_limits", limits / motion.steps)
            .add("seconds", motion.seconds);
    }
}

}  // namespace

template <class Grid>
void roundCurvature(const CurvatureMethods<Grid>& methods, int n, double stretch) {
    const int dim = dimensions(Grid());
    const double radius = (dim == 2 ? 40.0 / 128 : 20.0 / 64) * n;
    halve(methods, dim == 2 ? "disc" : "ball", ballAt(middle(n, dim), radius), n, stretch);
}

void pointedCurvature(const CurvatureMethods<FullLevelSet2D>& methods, int n, double stretch) {
    const double unit = n / 128.0;
    halve(methods, "star", starAt(middle(n, 2), 25 * unit, 8 * unit), n, stretch);
    halve(methods, "square", cubeAt(middle(n, 2), 30.3 * unit), n, stretch);
}

template void roundCurvature(const CurvatureMethods<FullLevelSet2D>&, int, double);
template void roundCurvature(const CurvatureMethods<FullLevelSet3D>&, int, double);

}  // namespace accuracy
