#pragma once

#include "../quorbin_export.h"

/// The case tables of marching cubes (Lorensen and Cline 1987).
///
/// Corners of cell (x, y, z) by offset: 0 (0,0,0), 1 (1,0,0), 2 (1,1,0), 3 (0,1,0), 4 to 7 the same one layer
/// up; corner k sets bit k of the case when its value is ≤ 0. On a face whose corners alternate the inside
/// corners are kept apart.
namespace MarchingCubes {

/// The two corners of an edge: 0 to 3 around the bottom, 4 to 7 upright, 8 to 11 around the top.
QUORBIN_EXPORT extern const signed char edges[12][2];
/// Number of triangles of a case.
QUORBIN_EXPORT extern const signed char lut_sizes[256];
/// The edges that the vertices of a case's triangles lie on, three a triangle, counterclockwise seen from
/// outside.
QUORBIN_EXPORT extern const signed char lut[256][15];

}  // namespace MarchingCubes
