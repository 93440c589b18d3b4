#pragma once

#include <array>

#include "common/distance/front.h"
#include "common/watch.h"
#include "quorbin3d/full_level_set_3d.h"

namespace lset::detail {

/// Finds the front row by row, layer by layer, and gives each of its points a state and a first distance (see
/// FrontFinder).
Front findFront(FullLevelSet3D& grid, const std::array<int, 3>& sizes, signed char* states, double* distances,
                const Stretch& stretch);

}  // namespace lset::detail
