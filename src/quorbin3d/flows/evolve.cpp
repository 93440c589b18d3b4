#include "evolve.h"

#include "common/flows/evolution.h"
#include "common/flows/extension.h"
#include "quorbin3d/storage/dense_traits.h"
#include "sample.h"

namespace quorbin {

EvolveResult evolve(FullLevelSet3D& field, const Equation3D& equation, double time,
                    const EvolveOptions& options) {
    return lset::detail::evolveOnGrid<FullLevelSet3D, brin::Vec3<double>>(field, equation, time, options);
}

std::vector<double> extended(const FullLevelSet3D& distance, const std::vector<double>& speeds) {
    return lset::detail::extendedOnGrid<brin::Vec3<double>>(distance, speeds);
}

}  // namespace quorbin
