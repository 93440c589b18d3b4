#include "common/flows/dense_flow.h"
#include "quorbin3d/mesh.h"
#include "quorbin3d/storage/dense_traits.h"

namespace {

double volumeInside(const FullLevelSet3D& grid) {
    quorbin::MeshOptions options;
    options.capped = true;
    return quorbin::enclosedVolume(quorbin::mesh(grid, options));
}

}  // namespace

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FullLevelSet3D& field, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnGrid(field, time, options, volumeInside);
}
