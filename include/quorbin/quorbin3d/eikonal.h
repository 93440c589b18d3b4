#pragma once

#include "../quorbin2d/eikonal.h"
#include "../quorbin_export.h"

/// Unsigned distance of a grid point by the eikonal quadratic from the distances of its known neighbours: the
/// smallest result from three neighbours on different axes; if there is none, from two on different axes; if
/// there is none, from a single one; 1e11 if none is known. A neighbour is known if its flag is not 0. The
/// distances come in the order of the flags, in which y and z begin with plus. hx, hy and hz are the
/// spacings.
QUORBIN_EXPORT double estimateDistanceHelper(int xMinusKnown, int xPlusKnown, int yPlusKnown, int yMinusKnown,
                                             int zPlusKnown, int zMinusKnown, double xMinus, double xPlus,
                                             double yPlus, double yMinus, double zPlus, double zMinus,
                                             double hx, double hy, double hz);
