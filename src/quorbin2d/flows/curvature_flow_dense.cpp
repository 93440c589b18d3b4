#include "common/flows/dense_flow.h"
#include "quorbin2d/contours.h"
#include "quorbin2d/storage/dense_traits.h"

namespace {

double areaInside(const FullLevelSet2D& grid) {
    double sum = 0;
    for (const quorbin::Polygon& polygon : quorbin::contours(grid)) sum += quorbin::area(polygon);
    return sum;
}

}  // namespace

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FullLevelSet2D& field, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnGrid(field, time, options, areaInside);
}
