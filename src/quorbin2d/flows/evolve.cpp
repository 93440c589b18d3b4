#include "evolve.h"

#include "common/flows/evolution.h"
#include "common/flows/extension.h"
#include "quorbin2d/storage/dense_traits.h"
#include "sample.h"

namespace quorbin {

EvolveResult evolve(FullLevelSet2D& field, const Equation2D& equation, double time,
                    const EvolveOptions& options) {
    return lset::detail::evolveOnGrid<FullLevelSet2D, brin::Vec2<double>>(field, equation, time, options);
}

std::vector<double> extended(const FullLevelSet2D& distance, const std::vector<double>& speeds) {
    return lset::detail::extendedOnGrid<brin::Vec2<double>>(distance, speeds);
}

}  // namespace quorbin
