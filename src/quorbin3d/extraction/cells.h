#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "common/differences/sign_rows.h"
#include "quorbin3d/differences/readers.h"
#include "quorbin3d/extraction/crossing.h"
#include "quorbin3d/marching_cubes.h"

namespace lset::detail {

/// Offsets of the corners of a cell, by number.
constexpr int kCornerX[8] = {0, 1, 1, 0, 0, 1, 1, 0};
constexpr int kCornerY[8] = {0, 0, 1, 1, 0, 0, 1, 1};
constexpr int kCornerZ[8] = {0, 0, 0, 0, 1, 1, 1, 1};

/// Visits the cells that the surface crosses, row by row, layer by layer: visit(x, y, z, case). Every corner
/// is read through its slot. Its sizes are read once. endLayer(done, all) follows each layer of cells.
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
        endLayer(z + 1, depth - 1);
    }
}

/// Visits the cells of exactly the dense grid whose corners have different flags: one look at each value,
/// eight cells at a time. Bit k of the case is the flag of corner k.
template <class Visit, class EndLayer>
void forEachMixedCell(const DenseReader3D& field, void (SignRow::*flag)(const double*), Visit visit,
                      EndLayer endLayer) {
    const int depth = field.depth(), height = field.height(), width = field.width();
    if (width < 2) return;
    const auto rows = static_cast<std::size_t>(std::max(height, 0));
    std::vector<SignRow> lower(rows, SignRow(width)), upper(lower);
    const auto look = [&](int z, std::vector<SignRow>& layer) {
        for (int y = 0; y < height; ++y) (layer[static_cast<std::size_t>(y)].*flag)(field.row(y, z));
    };
    if (depth > 1) look(0, lower);
    for (int z = 0; z < depth - 1; ++z) {
        look(z + 1, upper);
        for (int y = 0; y < height - 1; ++y) {
            const auto i = static_cast<std::size_t>(y);
            forEachMixedCube(lower[i], lower[i + 1], upper[i], upper[i + 1], width - 1, [&](int x) {
                const int cell = int{lower[i][x]} | int{lower[i][x + 1]} << 1 |
                                 int{lower[i + 1][x + 1]} << 2 | int{lower[i + 1][x]} << 3 |
                                 int{upper[i][x]} << 4 | int{upper[i][x + 1]} << 5 |
                                 int{upper[i + 1][x + 1]} << 6 | int{upper[i + 1][x]} << 7;
                visit(x, y, z, cell);
            });
        }
        lower.swap(upper);
        endLayer(z + 1, depth - 1);
    }
}

/// forEachCrossedCell for exactly the dense grid.
template <class Visit, class EndLayer>
void forEachCrossedCell(const DenseReader3D& field, Visit visit, EndLayer endLayer) {
    forEachMixedCell(field, &SignRow::flagNotPositive, visit, endLayer);
}

/// The grid point at a corner of cell (x, y, z).
inline GridPoint3D corner(int x, int y, int z, int number) {
    return {x + kCornerX[number], y + kCornerY[number], z + kCornerZ[number]};
}

}  // namespace lset::detail
