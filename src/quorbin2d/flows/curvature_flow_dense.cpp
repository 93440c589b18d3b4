#include <array>
#include <cstddef>

#include "common/flows/dense_flow.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/full_level_set_2d.h"

namespace {

struct PictureTraits {
    static constexpr std::size_t dimensions = 2;
    static std::array<int, 2> sizes(const FullLevelSet2D& grid) {
        return {grid.getWidth(), grid.getHeight()};
    }
    static std::array<double, 2> spacings(const FullLevelSet2D& grid) {
        return {grid.getXSpace(), grid.getYSpace()};
    }
    static double enclosedSize(const FullLevelSet2D& grid) {
        double sum = 0;
        for (const quorbin::Polygon& polygon : quorbin::contours(grid)) sum += quorbin::area(polygon);
        return sum;
    }
};

}  // namespace

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FullLevelSet2D& field, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnGrid<PictureTraits>(field, time, options);
}
