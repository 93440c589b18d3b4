#include "common/distance/reinitialize_dense.h"

#include "quorbin2d/storage/dense_traits.h"

bool quorbin::reinitialize(FullLevelSet2D& field, const ReinitializeOptions& options) {
    using Traits = lset::detail::DenseTraits<FullLevelSet2D>;
    return lset::detail::reinitializeDense<2>(field.data(), Traits::sizes(field), Traits::spacings(field),
                                              options);
}
