#include "common/flows/dense_flow.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/storage/dense_traits.h"

namespace {

double areaInside(const FullLevelSet2D& grid, const lset::detail::Stretch& stretch) {
    double sum = 0;
    for (const quorbin::Polygon& polygon :
         lset::detail::toTheEnd(quorbin::contours(grid, stretch.function())))
        sum += quorbin::area(polygon);
    return sum;
}

}  // namespace

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FullLevelSet2D& field, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnGrid(field, time, options, areaInside);
}
