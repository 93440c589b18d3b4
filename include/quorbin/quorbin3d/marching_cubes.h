#pragma once

#include "../quorbin_export.h"

/// The case tables of marching cubes (Lorensen and Cline 1987).
///
/// The corners of cell (x, y, z), by their offsets, are 0 (0,0,0), 1 (1,0,0), 2 (1,1,0) and 3 (0,1,0), and 4
/// to 7 the same one layer up. Bit k of a case is set if the value at corner k is ≤ 0. On a face whose
/// corners are inside and outside by turns, the two inside corners are not connected.
namespace MarchingCubes {

/// The two corners of an edge: 0 to 3 around the bottom, 4 to 7 upright, 8 to 11 around the top.
QUORBIN_EXPORT extern const signed char edges[12][2];
/// Number of triangles of a case.
QUORBIN_EXPORT extern const signed char lut_sizes[256];
/// For each case, the edges on which the vertices of its triangles lie: three for each triangle,
/// counterclockwise seen from outside. The rest is 0.
QUORBIN_EXPORT extern const signed char lut[256][15];

}  // namespace MarchingCubes
