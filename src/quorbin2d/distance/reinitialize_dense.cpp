#include "common/distance/reinitialize_dense.h"

#include "quorbin2d/full_level_set_2d.h"

bool quorbin::reinitialize(FullLevelSet2D& field, const ReinitializeOptions& options) {
    return lset::detail::reinitializeDense<2>(field.data(), {field.getWidth(), field.getHeight()},
                                              {field.getXSpace(), field.getYSpace()}, options);
}
