#include <algorithm>

#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

namespace {

struct Errors {
    double sum = 0, largest = 0;
    long count = 0;

    void add(double error) {
        sum += std::abs(error);
        largest = std::max(largest, std::abs(error));
        ++count;
    }
    double mean() const { return count > 0 ? sum / static_cast<double>(count) : NAN; }
};

/// Errors in units of the largest spacing, where the true distance is below three of it, and elsewhere as
/// long as the place is told to count.
template <class Grid, class Counts>
void measure(Line& line, Grid& grid, double stretch, const Shape& distance, Counts&& counts) {
    Errors near, far;
    visitSamples(grid, [&](double value, const Point& place) {
        const double exact = distance(place);
        if (!std::isfinite(value) || !counts(place, exact)) return;
        (std::abs(exact) < 3 * stretch ? near : far).add((value - exact) / stretch);
    });
    line.add("near_mean", near.mean()).add("near_largest", near.largest);
    if (far.count > 0) line.add("far_mean", far.mean()).add("far_largest", far.largest);
}

}  // namespace

template <class Grid>
void circleDistances(const DistanceMethods<Grid>& methods, int n, double factor, double stretch) {
    const int dim = dimensions(Grid());
    const Point centre = middle(n, dim);
    const Grid start = gridOf<Grid>(paraboloidAt(centre, 0.3 * n, factor), n, stretch);
    for (const auto& method : methods) {
        if (stretch != 1 && !method.takesAnySpacings) continue;
        Grid grid = copyOf(start);
        const double seconds = method.apply(grid);
        Line line("circle");
        line.add("dimensions", dim).add("n", n).add("slope", factor).add("stretch", stretch);
        line.add("method", method.name).add("seconds", seconds);
        // No distance is smooth at the centre, where rays from all around meet.
        measure(line, grid, stretch, ballAt(centre, 0.3 * n),
                [&](const Point& place, double) { return length(place - centre) > 3 * stretch; });
    }
}

template <class Grid>
void ellipsoidDistances(const DistanceMethods<Grid>& methods, int n) {
    const int dim = dimensions(Grid());
    const Point centre = middle(n, dim), halfAxes{0.3 * n, 0.2 * n, (dim == 2 ? 0.2 : 0.15) * n};
    const Shape shape = ellipsoidAt(centre, halfAxes);
    const Grid start = gridOf<Grid>(shape, n);
    for (const auto& method : methods) {
        Grid grid = copyOf(start);
        const double seconds = method.apply(grid);
        Line line("ellipsoid");
        line.add("dimensions", dim).add("n", n).add("method", method.name).add("seconds", seconds);
        measure(
            line, grid, 1,
            [&](const Point& p) {
                return shape(p) > 0 ? distanceOutsideEllipsoid(p - centre, halfAxes) : -1;
            },
            [](const Point&, double exact) { return exact > 0; });
    }
}

void squareCorners(const DistanceMethods<FullLevelSet2D>& methods, int n) {
    const Shape square = cubeAt(middle(n, 2), 30.3 / 128 * n);
    FullLevelSet2D start = gridOf<FullLevelSet2D>(square, n);
    const double before = enclosed(start);
    for (const auto& method : methods) {
        FullLevelSet2D grid = copyOf(start);
        method.apply(grid);
        Line line("square");
        line.add("dimensions", 2).add("n", n).add("method", method.name);
        measure(line, grid, 1, square, [](const Point&, double) { return true; });
        line.add("first_percent", 100 * (enclosed(grid) / before - 1));
        for (int calls = 2; calls <= 50; ++calls) method.apply(grid);
        line.add("after_50_percent", 100 * (enclosed(grid) / before - 1));
    }
}

template void circleDistances(const DistanceMethods<FullLevelSet2D>&, int, double, double);
template void circleDistances(const DistanceMethods<FullLevelSet3D>&, int, double, double);
template void ellipsoidDistances(const DistanceMethods<FullLevelSet2D>&, int);
template void ellipsoidDistances(const DistanceMethods<FullLevelSet3D>&, int);

}  // namespace accuracy
