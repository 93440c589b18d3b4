#include "common/distance/reinitialize_checks.h"
#include "common/flows/mask_flow.h"
#include "quorbin2d/full_level_set_2d.h"

bool quorbin::isMask(const FullLevelSet2D& field) {
    return lset::detail::hasTwoSides(field.data(), static_cast<std::size_t>(field.getWidth()) *
                                                       static_cast<std::size_t>(field.getHeight()));
}

bool quorbin::smoothMask(FullLevelSet2D& field, const SmoothMaskOptions& options) {
    const lset::detail::Vector<2> h = {field.getXSpace(), field.getYSpace()};
    lset::detail::checkSpacings(h);
    return lset::detail::smoothMaskOf(field, h, options);
}
