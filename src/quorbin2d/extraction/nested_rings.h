#pragma once

#include <utility>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/contours.h"

namespace lset::detail {

/// Contours in the making: points in grid-index units and directed segments between them, each point between
/// two segments or at the end of one, and the points that lie on grid edges along x, row by row and from left
/// to right.
struct RingTrace {
    struct RowCrossing {
        int point;
        int row;
        bool entersInside;  ///< what lies to the right of it is inside
    };

    std::vector<brin::Vec2<double>> points;
    std::vector<std::pair<int, int>> segments;
    std::vector<RowCrossing> rowCrossings;
};

/// Chains the segments to rings, gives each hole to the region around it, and scales the points by the
/// spacings. Which ring is a hole, and of what, follows from the order of the crossings alone, so that
/// samples of exactly 0, where rings touch, do no harm. Linear.
std::vector<quorbin::Polygon> nestedRings(RingTrace& trace, double xSpace, double ySpace, Stretch stretch);

}  // namespace lset::detail
