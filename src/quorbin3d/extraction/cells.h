#pragma once

#include "common/sign_rows.h"
#include "quorbin3d/differences/readers.h"
#include "quorbin3d/extraction/crossing.h"
#include "quorbin3d/marching_cubes.h"

namespace lset::detail {

/// Offsets of the corners of a cell, by number.
constexpr int kCornerX[8] = {0, 1, 1, 0, 0, 1, 1, 0};
constexpr int kCornerY[8] = {0, 0, 1, 1, 0, 0, 1, 1};
constexpr int kCornerZ[8] = {0, 0, 0, 0, 1, 1, 1, 1};

/// Visits the cells that the surface crosses, row by row, layer by layer: visit(x, y, z, case). Every corner is read through
/// its slot. endLayer(z) follows the cells between the layers z and z + 1.
template <class Visit, class EndLayer>
void forEachCrossedCell(const VirtualReader3D& field, Visit visit, EndLayer endLayer) {
    const int depth = field.depth(), height = field.height(), width = field.width();
    for (int z = 0; z < depth - 1; ++z) {
        for (int y = 0; y < height - 1; ++y)
            for (int x = 0; x < width - 1; ++x) {
                int cell = 0;
                for (int c = 0; c < 8; ++c)
                    if (field.get(x + kCornerX[c], y + kCornerY[c], z + kCornerZ[c]) <= 0) cell |= 1 << c;
                if (cell != 0 && cell != 255) visit(x, y, z, cell);
            }
        endLayer(z);
    }
}

/// The same for exactly the dense grid: one look at each value a row of cells, eight cells at a time.
template <class Visit, class EndLayer>
void forEachCrossedCell(const DenseReader3D& field, Visit visit, EndLayer endLayer) {
    const int depth = field.depth(), height = field.height(), width = field.width();
    if (width < 2) return;
    const auto isInside = [](double value) { return value <= 0; };
    SignRow lower(width), lowerNext(width), upper(width), upperNext(width);
    for (int z = 0; z < depth - 1; ++z) {
        if (height > 0) {
            lower.assign(field.row(0, z), isInside);
            upper.assign(field.row(0, z + 1), isInside);
        }
        for (int y = 0; y < height - 1; ++y) {
            lowerNext.assign(field.row(y + 1, z), isInside);
            upperNext.assign(field.row(y + 1, z + 1), isInside);
            forEachMixedCube(lower, lowerNext, upper, upperNext, width - 1, [&](int x) {
                const int cell = int{lower[x]} | int{lower[x + 1]} << 1 | int{lowerNext[x + 1]} << 2 |
                                 int{lowerNext[x]} << 3 | int{upper[x]} << 4 | int{upper[x + 1]} << 5 |
                                 int{upperNext[x + 1]} << 6 | int{upperNext[x]} << 7;
                visit(x, y, z, cell);
            });
            lower.swap(lowerNext);
            upper.swap(upperNext);
        }
        endLayer(z);
    }
}

/// The grid point at a corner of cell (x, y, z).
inline GridPoint3D corner(int x, int y, int z, int number) {
    return {x + kCornerX[number], y + kCornerY[number], z + kCornerZ[number]};
}

}  // namespace lset::detail
