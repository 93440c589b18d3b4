#pragma once

#include "../quorbin_export.h"

/// The case tables of marching squares.
///
/// The corners of cell (x, y) are 0 (x, y), 1 (x+1, y), 2 (x+1, y+1) and 3 (x, y+1). Bit k of a case is set
/// if the value at corner k is > 0. Edge 0 runs from corner 0 to 1, edge 1 from 1 to 2, edge 2 from 2 to 3,
/// edge 3 from 3 to 0. In both saddle cases, 5 and 10, the segments cut off corners 0 and 2 and leave 1 and 3
/// connected.
class QUORBIN_EXPORT MarchingSquares {
 public:
    /// Number of segments of a case.
    static const int lut_size[16];
    /// Segment s of case c runs from edge lut[c][2s] to edge lut[c][2s + 1]; −1 fills the rest.
    static const int lut[16][4];
};
