#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "brin/vec.h"
#include "common/watch.h"
#include "quorbin2d/extraction/segment_distance.h"

namespace lset::detail {

/// Segments in a tree of boxes, halved at the middle of their longer side. Finds the same squared distance,
/// to the last bit, as measuring every segment: a box is passed over only if it is further than any rounding
/// could make up for. Coordinates must be numbers.
class SegmentTree {
 public:
    using Point = brin::Vec2<double>;

    SegmentTree(const std::vector<Point>& points, const std::vector<std::pair<int, int>>& segments,
                Stretch stretch);

    /// The smallest of bound and the squared distances from p. nearest is tried first and then set to the
    /// segment found, so that a neighbouring point begins with a good guess; 0 to begin with.
    double smallest(const Point& p, double bound, std::size_t& nearest) const;

 private:
    static constexpr std::size_t kLeafSize = 4;

    struct Box {
        Point low, high;
        std::size_t first, last;  // of the segments
        std::size_t next;         // node after this box and all within it; the first half follows at once
    };
    struct Item {
        Point low, high;
        MeasuredSegment segment;
    };

    void build(std::vector<Item>& items, std::size_t first, std::size_t last, Stretch& stretch);

    std::vector<MeasuredSegment> segments_;
    std::vector<Box> boxes_;
};

}  // namespace lset::detail
