#pragma once

#include <vector>

#include "quorbin2d/full_level_set_2d.h"

namespace lset::detail {

/// The points next to a sign change, as indices y · width + x, in the order found.
struct Front2D {
    std::vector<int> outside, inside;
};

/// Finds the front row by row and gives each of its points a state and a first distance. The arrays have one
/// entry for each point; states must be far everywhere.
Front2D findFront(FullLevelSet2D& grid, signed char* states, double* distances, int width, int height);

}  // namespace lset::detail
