#pragma once

#include "../quorbin_export.h"

/// The case tables of marching squares.
///
/// Corners of cell (x, y): 0 (x, y), 1 (x+1, y), 2 (x+1, y+1), 3 (x, y+1); corner k sets bit k of the case
/// when its value is > 0. Edges run 0: corner 0 to 1, 1: 1 to 2, 2: 2 to 3, 3: 3 to 0. In both saddle cases
/// corners 0 and 2 are cut off and corners 1 and 3 are not.
class QUORBIN_EXPORT MarchingSquares {
 public:
    /// Number of segments of a case.
    static const int lut_size[16];
    /// Segment s of case c runs from edge lut[c][2s] to edge lut[c][2s + 1]; −1 after the last.
    static const int lut[16][4];
};
