#include <cmath>
#include <vector>

#include "flows.h"
#include "grids.h"
#include "line.h"

namespace accuracy {

namespace {

/// Connected parts of the samples on one side; parts that meet along an axis only are one.
int pieces(const FullLevelSet3D& grid, bool inside) {
    const int size[] = {grid.getWidth(), grid.getHeight(), grid.getDepth()};
    const std::ptrdiff_t stride[] = {1, size[0], static_cast<std::ptrdiff_t>(size[0]) * size[1]};
    const std::ptrdiff_t all = stride[2] * size[2];
    std::vector<bool> isSeen(static_cast<std::size_t>(all));
    std::vector<std::ptrdiff_t> open;
    int count = 0;
    const auto take = [&](std::ptrdiff_t i) {
        if (isSeen[static_cast<std::size_t>(i)] || (grid.data()[i] <= 0) != inside) return;
        isSeen[static_cast<std::size_t>(i)] = true;
        open.push_back(i);
    };
    for (std::ptrdiff_t first = 0; first < all; ++first) {
        take(first);
        count += !open.empty();
        while (!open.empty()) {
            const std::ptrdiff_t i = open.back();
            open.pop_back();
            for (int axis = 0; axis < 3; ++axis) {
                const std::ptrdiff_t at = i / stride[axis] % size[axis];
                if (at > 0) take(i - stride[axis]);
                if (at + 1 < size[axis]) take(i + stride[axis]);
            }
        }
    }
    return count;
}

bool hasNotANumber(FullLevelSet3D& grid) {
    bool found = false;
    visitSamples(grid, [&](double value, const Point&) { found = found || std::isnan(value); });
    return found;
}

}  // namespace

void pinch(const CurvatureMethods<FullLevelSet3D>& methods, int n) {
    const double unit = n / 96.0;
    FullLevelSet3D start =
        gridOf<FullLevelSet3D>(dumbbellAt(middle(n, 3), 24 * unit, 15 * unit, 6 * unit), n);
    quorbin::reinitialize(start);
    const double chunk = 10 * stepLimit(start), end = 30 * unit * unit;
    for (const auto& method : methods) {
        FullLevelSet3D grid = copyOf(start);
        double time = 0, apart = NAN;
        int mostPieces = pieces(grid, true), mostHoles = 0;
        bool isNumber = true;
        while (time < end && mostPieces > 0) {
            time += method.move(grid, chunk).time;
            const int now = pieces(grid, true);
            if (now == 2 && std::isnan(apart)) apart = time;
            mostPieces = std::max(mostPieces, now);
            mostHoles = std::max(mostHoles, pieces(grid, false) - 1);
            isNumber = isNumber && !hasNotANumber(grid);
        }
        Line("pinch")
            .add("dimensions", 3)
            .add("n", n)
            .add("method", method.name)
            .add("apart_after", apart)
            .add("most_pieces", mostPieces)
            .add("pieces_at_end", pieces(grid, true))
            .add("most_holes", mostHoles)
            .add("is_finite", isNumber ? 1 : 0);
    }
}

}  // namespace accuracy
