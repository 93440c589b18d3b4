#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

template <class Grid>
void drift(const DistanceMethods<Grid>& methods, int n) {
    const int dim = dimensions(Grid());
    const Grid start = gridOf<Grid>(ballAt(middle(n, dim), (dim == 2 ? 40.0 / 128 : 20.0 / 64) * n), n);
    const double before = enclosed(start);
    for (const auto& method : methods) {
        Grid grid = copyOf(start);
        double seconds = 0;
        for (int calls = 1; calls <= 100; ++calls) {
            seconds += method.apply(grid);
            if (calls != 1 && calls != 10 && calls != 100) continue;
            Line("drift")
                .add("dimensions", dim)
                .add("n", n)
                .add("method", method.name)
                .add("calls", calls)
                .add("change_percent", 100 * (enclosed(grid) / before - 1))
                .add("seconds_a_call", seconds / calls);
        }
    }
}

template void drift(const DistanceMethods<FullLevelSet2D>&, int);
template void drift(const DistanceMethods<FullLevelSet3D>&, int);

}  // namespace accuracy
