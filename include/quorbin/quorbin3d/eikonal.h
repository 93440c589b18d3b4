#pragma once

#include "../quorbin2d/eikonal.h"
#include "../quorbin_export.h"

/// Unsigned distance of a grid point from its neighbours, by the eikonal quadratic: the smallest over three
/// neighbours on different axes that are known, else over pairs, else over single ones; 1e11 if none is
/// known. The flags say which are known; distances come in the same order, and the spacings along x, y, z.
QUORBIN_EXPORT double estimateDistanceHelper(int xMinusKnown, int xPlusKnown, int yPlusKnown, int yMinusKnown,
                                             int zPlusKnown, int zMinusKnown, double xMinus, double xPlus,
                                             double yPlus, double yMinus, double zPlus, double zMinus,
                                             double hx, double hy, double hz);
