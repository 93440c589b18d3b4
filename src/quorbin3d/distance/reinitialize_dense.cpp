#include "common/distance/reinitialize_dense.h"

#include "quorbin3d/storage/dense_traits.h"

bool quorbin::reinitialize(FullLevelSet3D& field, const ReinitializeOptions& options) {
    using Traits = lset::detail::DenseTraits<FullLevelSet3D>;
    return lset::detail::reinitializeDense<3>(field.data(), Traits::sizes(field), Traits::spacings(field),
                                              options);
}
