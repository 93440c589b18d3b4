#pragma once

#include "common/distance/foot_distance.h"
#include "common/watch.h"
#include "reinitialize.h"

namespace lset::detail {

/// quorbin::reinitialize as a part of an operation; where that is ended, values are lost.
void reinitializePart(FullLevelSet2D& grid, const Stretch& stretch, OldValues old = OldValues::kTrusted);
void reinitializePart(FullLevelSet3D& grid, const Stretch& stretch, OldValues old = OldValues::kTrusted);

}  // namespace lset::detail
