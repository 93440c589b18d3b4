#pragma once

#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/extraction/cells.h"
#include "quorbin2d/marching_squares.h"

namespace lset::detail {

/// The points where the contour crosses the edges of a cell of any band, read anew through the slots.
class VirtualBandCell {
 public:
    VirtualBandCell(const VirtualBandReader2D& reader, int x, int y, const double (&)[4])
        : field_{reader.band()}, crossings_(field_, x, y) {}
    brin::Vec2<double> on(int edge) const { return crossings_.on(edge); }

 private:
    VirtualReader2D field_;
    CellCrossings<VirtualReader2D> crossings_;
};

/// The same from the values at the corners, counterclockwise from (x, y).
class TiledBandCell {
 public:
    TiledBandCell(const TiledBandReader2D&, int x, int y, const double (&corners)[4])
        : at_{double(x), double(y)}, corners_(corners) {}
    brin::Vec2<double> on(int edge) const {
        const int end = (edge + 1) % 4;
        return zeroCrossing({at_.x + kSquareX[edge], at_.y + kSquareY[edge]}, corners_[edge],
                            {at_.x + kSquareX[end], at_.y + kSquareY[end]}, corners_[end]);
    }

 private:
    brin::Vec2<double> at_;
    const double (&corners_)[4];
};

inline VirtualBandCell bandCell(const VirtualBandReader2D& reader, int x, int y, const double (&corners)[4]) {
    return {reader, x, y, corners};
}
inline TiledBandCell bandCell(const TiledBandReader2D& reader, int x, int y, const double (&corners)[4]) {
    return {reader, x, y, corners};
}

/// In which order the other corners of a cell are asked for.
enum class CornerOrder { kRightAboveDiagonal, kRightDiagonalAbove };

/// Visits the cells of a band whose four corners are stored, in the order of their lower left ones:
/// visit(lower left point, places, values) of the corners, counterclockwise from the lower left one.
template <CornerOrder order, class Reader, class Visit>
void forEachWholeCell(const Reader& band, Visit visit) {
    using Place = typename Reader::Place;
    band.forEach([&](const PointAnd<double>& point, Place p) {
        const Place right = band.template step<0, 1>(p), above = band.template step<1, 1>(p);
        const Place diagonal = band.template step<1, 1>(right);
        if (!band.have(right)) return;
        if (order == CornerOrder::kRightAboveDiagonal ? !band.have(above) || !band.have(diagonal)
                                                      : !band.have(diagonal) || !band.have(above))
            return;
        const Place corners[4] = {p, right, diagonal, above};
        double values[4] = {point.value};
        for (int c = 1; c < 4; ++c) values[c] = band.get(corners[c]);
        visit(point, corners, values);
    });
}

/// Visits those of them that carry segments: visit(lower left point, places, cell, case).
template <CornerOrder order, class Reader, class Visit>
void forEachBandCell(const Reader& band, Visit visit) {
    using Place = typename Reader::Place;
    forEachWholeCell<order>(band, [&](const auto& point, const Place(&corners)[4], const double(&values)[4]) {
        const int cell = cellCase(values[0] > 0.0, values[1] > 0.0, values[2] > 0.0, values[3] > 0.0);
        if (MarchingSquares::lut_size[cell] > 0)
            visit(point, corners, bandCell(band, point.x, point.y, values), cell);
    });
}

}  // namespace lset::detail
