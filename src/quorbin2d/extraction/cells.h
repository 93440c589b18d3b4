#pragma once

#include "brin/vec.h"
#include "common/differences/sign_rows.h"
#include "quorbin2d/differences/readers.h"
#include "quorbin2d/extraction/crossing.h"
#include "quorbin2d/marching_squares.h"

namespace lset::detail {

/// The case of a cell from its corners, counterclockwise from (x, y); set means > 0.
inline int cellCase(bool corner0, bool corner1, bool corner2, bool corner3) {
    return int{corner0} | int{corner1} << 1 | int{corner2} << 2 | int{corner3} << 3;
}

/// Visits the segments of a case in their order: visit(start edge, end edge).
template <class Visit>
void forEachSegment(int caseOfCell, Visit visit) {
    const int* edge = MarchingSquares::lut[caseOfCell];
    for (int s = 0; s < MarchingSquares::lut_size[caseOfCell]; ++s, edge += 2) visit(edge[0], edge[1]);
}

/// Offsets of the corners of a cell, counterclockwise. Edge k leads from corner k to the next.
constexpr int kSquareX[4] = {0, 1, 1, 0}, kSquareY[4] = {0, 0, 1, 1};

/// Visits the cells whose corners differ, row by row: visit(x, y, case). endRow(done, all) follows each row.
/// read(x, y) gives the value at a corner; all four are read, in order, for every cell.
template <class Read, class Visit, class EndRow>
void forEachCellRead(int width, int height, Read read, Visit visit, EndRow endRow) {
    for (int y = 0; y < height - 1; ++y) {
        for (int x = 0; x < width - 1; ++x) {
            bool isPositive[4];
            for (int k = 0; k < 4; ++k) isPositive[k] = read(x + kSquareX[k], y + kSquareY[k]) > 0.0;
            const int cell = cellCase(isPositive[0], isPositive[1], isPositive[2], isPositive[3]);
            if (cell != 0 && cell != 15) visit(x, y, cell);
        }
        endRow(y + 1, height - 1);
    }
}

/// The same through the slot.
template <class Visit, class EndRow>
void forEachCrossedCell(const VirtualReader2D& field, int width, int height, Visit visit, EndRow endRow) {
    forEachCellRead(
        width, height, [&](int x, int y) { return field.get(x, y); }, visit, endRow);
}

/// The same for exactly the dense grid: one look at each value, eight cells at a time.
template <class Visit, class EndRow>
void forEachCrossedCell(const DenseReader2D& field, int width, int height, Visit visit, EndRow endRow) {
    if (width < 2 || height < 2) return;
    SignRow lower(width), upper(width);
    lower.flagPositive(field.row(0));
    for (int y = 0; y < height - 1; ++y) {
        upper.flagPositive(field.row(y + 1));
        forEachMixedCell(lower, upper, width - 1, [&](int x) {
            visit(x, y, cellCase(lower[x], lower[x + 1], upper[x + 1], upper[x]));
        });
        lower.swap(upper);
        endRow(y + 1, height - 1);
    }
}

/// The crossings on the edges of a cell, measured from the end where an edge begins.
template <class Reader>
class CellCrossings {
 public:
    CellCrossings(const Reader& field, int x, int y) : field_(field), x_(x), y_(y) {}

    brin::Vec2<double> on(int edge) const {
        const int end = (edge + 1) % 4;
        const int x0 = x_ + kSquareX[edge], y0 = y_ + kSquareY[edge];
        const int x1 = x_ + kSquareX[end], y1 = y_ + kSquareY[end];
        const double f0 = field_.get(x0, y0);
        const double f1 = field_.get(x1, y1);
        return zeroCrossing({double(x0), double(y0)}, f0, {double(x1), double(y1)}, f1);
    }

 private:
    const Reader& field_;
    int x_, y_;
};

/// The same for exactly the dense grid, by table: which edge it is cannot be foreseen, and a wrong guess
/// costs more than the arithmetic. Both coordinates are worked out in one register.
template <>
class CellCrossings<DenseReader2D> {
 public:
    [[gnu::always_inline]] CellCrossings(const DenseReader2D& field, int x, int y)
        : corner_(field.row(y) + x), stride_(field.width()), at_{double(x), double(y)} {}

    [[gnu::always_inline]] brin::Vec2<double> on(int edge) const {
        static constexpr Pair kBegin[4] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        static constexpr Pair kEnd[4] = {{1, 0}, {1, 1}, {0, 1}, {0, 0}};
        static constexpr int kBeginX[4] = {0, 1, 1, 0}, kEndX[4] = {1, 1, 0, 0};
        static constexpr int kBeginY[4] = {0, 0, -1, -1}, kEndY[4] = {0, -1, -1, 0};
        const double f0 = corner_[kBeginX[edge] + (kBeginY[edge] & stride_)];
        const double f1 = corner_[kEndX[edge] + (kEndY[edge] & stride_)];
        const double t = crossingParameter(f0, f1);
        const Pair point = (1 - t) * (at_ + kBegin[edge]) + t * (at_ + kEnd[edge]);
        return {point[0], point[1]};
    }

 private:
    typedef double Pair __attribute__((vector_size(16)));

    const double* corner_;
    std::ptrdiff_t stride_;
    Pair at_;
};

}  // namespace lset::detail
