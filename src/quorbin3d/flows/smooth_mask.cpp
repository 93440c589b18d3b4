#include "common/distance/reinitialize_checks.h"
#include "common/flows/mask_flow.h"
#include "quorbin3d/full_level_set_3d.h"

bool quorbin::isMask(const FullLevelSet3D& field) {
    return lset::detail::hasTwoSides(field.data(), static_cast<std::size_t>(field.getWidth()) *
                                                       static_cast<std::size_t>(field.getHeight()) *
                                                       static_cast<std::size_t>(field.getDepth()));
}

bool quorbin::smoothMask(FullLevelSet3D& field, const SmoothMaskOptions& options) {
    const lset::detail::Vector<3> h = {field.getXSpace(), field.getYSpace(), field.getZSpace()};
    lset::detail::checkSpacings(h);
    return lset::detail::smoothMaskOf(field, h, options);
}
