#include "common/distance/reinitialize_dense.h"

#include "common/distance/reinitialize_part.h"
#include "quorbin3d/storage/dense_traits.h"

bool quorbin::reinitialize(FullLevelSet3D& field, const ReinitializeOptions& options) {
    return lset::detail::reinitializeUnlessEnded(field, options.progress);
}

void lset::detail::reinitializePart(FullLevelSet3D& grid, const Stretch& stretch, OldValues old) {
    NothingKept before;
    reinitializeDense(grid, old, stretch, before);
}
