#include "common/distance/reinitialize_dense.h"

#include "quorbin3d/full_level_set_3d.h"

bool quorbin::reinitialize(FullLevelSet3D& field, const ReinitializeOptions& options) {
    return lset::detail::reinitializeDense<3>(
        field.data(), {field.getWidth(), field.getHeight(), field.getDepth()},
        {field.getXSpace(), field.getYSpace(), field.getZSpace()}, options);
}
