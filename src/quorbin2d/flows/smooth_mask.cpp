#include "common/distance/reinitialize_checks.h"
#include "common/flows/mask_flow.h"
#include "quorbin2d/storage/dense_traits.h"

bool quorbin::isMask(const FullLevelSet2D& field) {
    return lset::detail::hasTwoSides(field.data(), lset::detail::pointCount(field));
}

bool quorbin::smoothMask(FullLevelSet2D& field, const SmoothMaskOptions& options) {
    const lset::detail::Vector<2> h = lset::detail::DenseTraits<FullLevelSet2D>::spacings(field);
    lset::detail::checkSpacings(h);
    return lset::detail::smoothMaskOf(field, h, options);
}
