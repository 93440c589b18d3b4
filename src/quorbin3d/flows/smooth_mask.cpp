#include "common/distance/reinitialize_checks.h"
#include "common/flows/mask_flow.h"
#include "quorbin3d/storage/dense_traits.h"

bool quorbin::isMask(const FullLevelSet3D& field) {
    return lset::detail::hasTwoSides(field.data(), lset::detail::pointCount(field));
}

bool quorbin::smoothMask(FullLevelSet3D& field, const SmoothMaskOptions& options) {
    const lset::detail::Vector<3> h = lset::detail::DenseTraits<FullLevelSet3D>::spacings(field);
    lset::detail::checkSpacings(h);
    return lset::detail::smoothMaskOf(field, h, options);
}
