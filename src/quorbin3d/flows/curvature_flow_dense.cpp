#include <array>
#include <cstddef>

#include "common/flows/dense_flow.h"
#include "quorbin3d/full_level_set_3d.h"
#include "quorbin3d/mesh.h"

namespace {

struct VolumeTraits {
    static constexpr std::size_t dimensions = 3;
    static std::array<int, 3> sizes(const FullLevelSet3D& grid) {
        return {grid.getWidth(), grid.getHeight(), grid.getDepth()};
    }
    static std::array<double, 3> spacings(const FullLevelSet3D& grid) {
        return {grid.getXSpace(), grid.getYSpace(), grid.getZSpace()};
    }
    static double enclosedSize(const FullLevelSet3D& grid) {
        quorbin::MeshOptions options;
        options.capped = true;
        return quorbin::enclosedVolume(quorbin::mesh(grid, options));
    }
};

}  // namespace

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FullLevelSet3D& field, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnGrid<VolumeTraits>(field, time, options);
}
