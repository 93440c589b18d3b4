#include "quorbin3d/distance/front_dense.h"

#include <algorithm>

#include "common/differences/sign_rows.h"
#include "quorbin3d/differences/readers.h"
#include "quorbin3d/distance/first_distance.h"

namespace lset::detail {

namespace {

/// Looks at a point and its neighbours after it along each axis, which at the faces are the point itself.
template <class Finder>
void findFrontOf(FullLevelSet3D& grid, const VirtualReader3D&, int width, int height, int depth,
                 Finder& finder, const Stretch& stretch) {
    for (int z = 0; z < depth; ++z) {
        stretch.tell(static_cast<double>(z) / depth);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int x1 = std::min(x + 1, width - 1), y1 = std::min(y + 1, height - 1),
                          z1 = std::min(z + 1, depth - 1);
                const bool here = grid(x, y, z) <= 0;
                const bool right = grid(x1, y, z) <= 0;
                const bool next = grid(x, y1, z) <= 0;
                const bool above = grid(x, y, z1) <= 0;
                finder.look({x, y, z}, here, {x1, y, z}, right);
                finder.look({x, y, z}, here, {x, y1, z}, next);
                finder.look({x, y, z}, here, {x, y, z1}, above);
            }
    }
}

template <class Finder>
void findFrontOf(FullLevelSet3D&, const DenseReader3D& field, int width, int height, int depth,
                 Finder& finder, const Stretch& stretch) {
    SignRow here(width), next(width), above(width);
    for (int z = 0; z < depth; ++z) {
        stretch.tell(static_cast<double>(z) / depth);
        here.flagNotPositive(field.row(0, z));
        for (int y = 0; y < height; ++y) {
            const int y1 = std::min(y + 1, height - 1), z1 = std::min(z + 1, depth - 1);
            next.flagNotPositive(field.row(y1, z));
            above.flagNotPositive(field.row(y, z1));
            forEachMixedCube(here, next, above, above, width, [&](int x) {
                const int x1 = std::min(x + 1, width - 1);
                finder.look({x, y, z}, here[x], {x1, y, z}, here[x1]);
                finder.look({x, y, z}, here[x], {x, y1, z}, next[x]);
                finder.look({x, y, z}, here[x], {x, y, z1}, above[x]);
            });
            here.swap(next);
        }
    }
}

}  // namespace

Front findFront(FullLevelSet3D& grid, const std::array<int, 3>& sizes, signed char* states, double* distances,
                const Stretch& stretch) {
    return withReader(grid, [&](const auto& field) {
        const auto firstDistance = [&](const std::array<int, 3>& p) {
            return firstDistanceOf(field, p[0], p[1], p[2]);
        };
        FrontFinder<3, decltype(firstDistance)> finder(sizes, states, distances, firstDistance);
        findFrontOf(grid, field, sizes[0], sizes[1], sizes[2], finder, stretch);
        return finder.takeFront();
    });
}

}  // namespace lset::detail
