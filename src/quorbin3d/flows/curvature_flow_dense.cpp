#include "common/flows/dense_flow.h"
#include "quorbin3d/mesh.h"
#include "quorbin3d/storage/dense_traits.h"

namespace {

double volumeInside(const FullLevelSet3D& grid, const lset::detail::Stretch& stretch) {
    quorbin::MeshOptions options;
    options.capped = true;
    return quorbin::enclosedVolume(lset::detail::toTheEnd(quorbin::mesh(grid, options, stretch.function())));
}

}  // namespace

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FullLevelSet3D& field, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnGrid(field, time, options, volumeInside);
}
