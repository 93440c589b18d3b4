#pragma once

/// Everything for level sets in two dimensions, from grids to contours.

#include "quorbin_version.h"

#include "quorbin2d/level_set_2d.h"

#include "quorbin2d/full_level_set_2d.h"

#include "quorbin2d/fast_level_set_2d.h"

#include "quorbin2d/eikonal.h"

#include "quorbin2d/marching_squares.h"

#include "quorbin2d/contour.h"
#include "quorbin2d/contour_hash.h"
#include "quorbin2d/contours.h"
