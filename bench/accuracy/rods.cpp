#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

namespace {

/// A rod whose section is 2 × 2 samples, along y or, almost, along the diagonal of x and y.
Shape rod(int n, bool isDiagonal) {
    const double middle = 0.5 * (n - 1), half = std::sqrt(0.5);
    return [=](const Point& p) {
        const double x = p[0] - middle, y = p[1] - middle;
        // A little beside the diagonal, where samples would lie on the surface.
        const double across = isDiagonal ? (x - y) * half + 0.01 : x, along = isDiagonal ? (x + y) * half : y;
        return boxDistance({across, along, p[2] - middle}, {1, 0.375 * n, 1});
    };
}

}  // namespace

void thinRods(const DistanceMethods<FullLevelSet3D>& methods, int n) {
    for (const bool isDiagonal : {false, true})
        for (const bool isMask : {false, true}) {
            const Shape shape = rod(n, isDiagonal);
            FullLevelSet3D start = gridOf<FullLevelSet3D>(
                [&](const Point& p) { return isMask ? (shape(p) <= 0 ? -0.5 : 0.5) : shape(p); }, n);
            for (const auto& method : methods) {
                FullLevelSet3D grid = copyOf(start);
                method.apply(grid);
                const double first = enclosed(grid);
                for (int calls = 2; calls <= 50; ++calls) method.apply(grid);
                long changed = 0;
                const double* old = start.data();
                visitSamples(grid,
                             [&](double value, const Point&) { changed += (value <= 0) != (*old++ <= 0); });
                Line("rod")
                    .add("dimensions", 3)
                    .add("n", n)
                    .add("direction", isDiagonal ? "diagonal" : "axis")
                    .add("input", isMask ? "mask" : "distance")
                    .add("method", method.name)
                    .add("sign_changes", changed)
                    .add("first_percent", 100 * (first / enclosed(start) - 1))
                    .add("later_percent", 100 * (enclosed(grid) / first - 1))
                    .add("after_50_percent", 100 * (enclosed(grid) / enclosed(start) - 1));
            }
        }
}

}  // namespace accuracy
