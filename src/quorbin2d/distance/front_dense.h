#pragma once

#include <array>

#include "common/distance/front.h"
#include "common/watch.h"
#include "quorbin2d/full_level_set_2d.h"

namespace lset::detail {

/// Finds the front row by row and gives each of its points a state and a first distance (see FrontFinder).
Front findFront(FullLevelSet2D& grid, const std::array<int, 2>& sizes, signed char* states, double* distances,
                const Stretch& stretch);

}  // namespace lset::detail
