#pragma once

#include "brin/vec.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/differences/sign_rows.h"
#include "quorbin2d/extraction/crossing.h"

namespace lset::detail {

/// The case of a cell from its corners, counterclockwise from (x, y); set means > 0.
inline int cellCase(bool corner0, bool corner1, bool corner2, bool corner3) {
    return int{corner0} | int{corner1} << 1 | int{corner2} << 2 | int{corner3} << 3;
}

/// Visits the cells that carry segments, row by row: visit(x, y, case). Every corner is read through its
/// slot.
template <class Visit, class EndRow>
void forEachCrossedCell(const VirtualReader2D& field, int width, int height, Visit visit, EndRow endRow) {
    for (int y = 0; y < height - 1; ++y) {
        for (int x = 0; x < width - 1; ++x) {
            const bool corner0 = field.get(x, y) > 0.0;
            const bool corner1 = field.get(x + 1, y) > 0.0;
            const bool corner2 = field.get(x + 1, y + 1) > 0.0;
            const bool corner3 = field.get(x, y + 1) > 0.0;
            const int cell = cellCase(corner0, corner1, corner2, corner3);
            if (cell != 0 && cell != 15) visit(x, y, cell);
        }
        endRow(y + 1);
    }
}

/// The same for exactly the dense grid: one look at each value, eight cells at a time.
template <class Visit, class EndRow>
void forEachCrossedCell(const DenseReader2D& field, int width, int height, Visit visit, EndRow endRow) {
    if (width < 2 || height < 2) return;
    const auto isSet = [](double value) { return value > 0.0; };
    SignRow lower(width), upper(width);
    lower.assign(field.row(0), isSet);
    for (int y = 0; y < height - 1; ++y) {
        upper.assign(field.row(y + 1), isSet);
        forEachMixedCell(lower, upper, width - 1, [&](int x) {
            visit(x, y, cellCase(lower[x], lower[x + 1], upper[x + 1], upper[x]));
        });
        lower.swap(upper);
        endRow(y + 1);
    }
}

/// Where the interface crosses an edge of a cell, measured from the end where the edge begins.
template <class Reader>
[[gnu::always_inline]] inline brin::Vec2<double> crossingOnEdge(const Reader& field, int x, int y, int edge) {
    // By table: which edge it is cannot be foreseen, and a wrong guess costs more than the arithmetic.
    constexpr int kBeginX[4] = {0, 1, 1, 0}, kBeginY[4] = {0, 0, 1, 1};
    constexpr int kEndX[4] = {1, 1, 0, 0}, kEndY[4] = {0, 1, 1, 0};
    constexpr double kBegin[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    constexpr double kEnd[4][2] = {{1, 0}, {1, 1}, {0, 1}, {0, 0}};
    const double f0 = field.getInGrid(x + kBeginX[edge], y + kBeginY[edge]);
    const double f1 = field.getInGrid(x + kEndX[edge], y + kEndY[edge]);
    const brin::Vec2<double> corner(x, y);
    return zeroCrossing(corner + brin::Vec2<double>(kBegin[edge][0], kBegin[edge][1]), f0,
                        corner + brin::Vec2<double>(kEnd[edge][0], kEnd[edge][1]), f1);
}

}  // namespace lset::detail
