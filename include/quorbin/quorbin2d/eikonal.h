#pragma once

#include "../quorbin_export.h"

/// The larger root t of (t − a)²/hx² + (t − b)²/hy² = 1: the distance of a grid point whose neighbours along
/// x and y have the distances a and b, with the spacings hx and hy. Not-a-number if there is no real root,
/// that is, if (a − b)² > hx² + hy².
QUORBIN_EXPORT double quadraticFMM(double a, double b, double hx, double hy);

/// The same function under a second name.
QUORBIN_EXPORT double quadraticFMM_2(double a, double b, double hx, double hy);

/// The same with a third neighbour, along z: the larger root t of (t − a)²/hx² + (t − b)²/hy² + (t − c)²/hz²
/// = 1, or 1e11 if there is no real root or it is negative.
QUORBIN_EXPORT double quadraticFMM(double a, double b, double c, double hx, double hy, double hz);
