#include "quorbin2d/extraction/segment_distance.h"

#include "quorbin2d/contour.h"

double distToSeg(brin::Vec2<double>& a, brin::Vec2<double>& b, brin::Vec2<double>& p, int* side) {
    const lset::detail::MeasuredSegment segment(a, b);
    if (side != nullptr) *side = segment.hasOnLeft(p) ? 1 : 0;
    return segment.squaredDistance(p);
}
