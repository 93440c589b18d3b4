#include "quorbin2d/distance/front_dense.h"

#include <algorithm>

#include "common/differences/sign_rows.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/distance/first_distance.h"

namespace lset::detail {

namespace {

/// Looks at a point and its right and upper neighbours, which at the edge are the point itself.
template <class Finder>
void findFrontOf(FullLevelSet2D& grid, const VirtualReader2D&, int width, int height, Finder& finder,
                 const Stretch& stretch) {
    for (int y = 0; y < height; ++y) {
        stretch.tell(static_cast<double>(y) / height);
        for (int x = 0; x < width; ++x) {
            const int x1 = std::min(x + 1, width - 1), y1 = std::min(y + 1, height - 1);
            const bool here = grid(x, y) <= 0;
            const bool right = grid(x1, y) <= 0;
            const bool up = grid(x, y1) <= 0;
            finder.look({x, y}, here, {x1, y}, right);
            finder.look({x, y}, here, {x, y1}, up);
        }
    }
}

template <class Finder>
void findFrontOf(FullLevelSet2D&, const DenseReader2D& field, int width, int height, Finder& finder,
                 const Stretch& stretch) {
    SignRow here(width), above(width);
    here.flagNotPositive(field.row(0));
    for (int y = 0; y < height; ++y) {
        stretch.tell(static_cast<double>(y) / height);
        const int y1 = std::min(y + 1, height - 1);
        above.flagNotPositive(field.row(y1));
        forEachMixedCell(here, above, width, [&](int x) {
            const int x1 = std::min(x + 1, width - 1);
            finder.look({x, y}, here[x], {x1, y}, here[x1]);
            finder.look({x, y}, here[x], {x, y1}, above[x]);
        });
        here.swap(above);
    }
}

}  // namespace

Front findFront(FullLevelSet2D& grid, const std::array<int, 2>& sizes, signed char* states, double* distances,
                const Stretch& stretch) {
    if (sizes[0] == 0 || sizes[1] == 0) return {};
    return withReader(grid, [&](const auto& field) {
        const auto firstDistance = [&](const std::array<int, 2>& p) {
            return firstDistanceOf(field, p[0], p[1]);
        };
        FrontFinder<2, decltype(firstDistance)> finder(sizes, states, distances, firstDistance);
        findFrontOf(grid, field, sizes[0], sizes[1], finder, stretch);
        return finder.takeFront();
    });
}

}  // namespace lset::detail
