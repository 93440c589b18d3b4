#include "quorbin2d/distance/segment_tree.h"

#include <algorithm>

namespace lset::detail {

SegmentTree::SegmentTree(const std::vector<Point>& points, const std::vector<std::pair<int, int>>& segments,
                         Stretch stretch) {
    std::size_t levels = 1;
    while (segments.size() >> levels != 0) ++levels;
    stretch.expect(segments.size() * levels);
    std::vector<Item> items;
    items.reserve(segments.size());
    for (const auto& [start, end] : segments) {
        const Point &a = points[static_cast<std::size_t>(start)], &b = points[static_cast<std::size_t>(end)];
        items.push_back(
            {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::max(a.x, b.x), std::max(a.y, b.y)}, {a, b}});
    }
    if (!items.empty()) build(items, 0, items.size(), stretch);
    segments_.reserve(items.size());
    for (const Item& item : items) segments_.push_back(item.segment);
}

void SegmentTree::build(std::vector<Item>& items, std::size_t first, std::size_t last, Stretch& stretch) {
    stretch.step(last - first);
    Box box{items[first].low, items[first].high, first, last, 0};
    for (std::size_t i = first; i < last; ++i) {
        box.low = {std::min(box.low.x, items[i].low.x), std::min(box.low.y, items[i].low.y)};
        box.high = {std::max(box.high.x, items[i].high.x), std::max(box.high.y, items[i].high.y)};
    }
    const std::size_t node = boxes_.size();
    boxes_.push_back(box);
    if (last - first > kLeafSize) {
        const bool byX = box.high.x - box.low.x > box.high.y - box.low.y;
        const auto begin = items.begin();
        const std::size_t middle = first + (last - first) / 2;
        std::nth_element(
            begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(middle),
            begin + static_cast<std::ptrdiff_t>(last),
            [byX](const Item& a, const Item& b) { return byX ? a.low.x < b.low.x : a.low.y < b.low.y; });
        build(items, first, middle, stretch);
        build(items, middle, last, stretch);
    }
    boxes_[node].next = boxes_.size();
}

double SegmentTree::smallest(const Point& p, double bound, std::size_t& nearest) const {
    double best = bound;
    const auto offer = [&](std::size_t i) {
        const double d = segments_[i].squaredDistance(p);
        if (d > best) return;
        best = d;
        nearest = i;
    };
    if (nearest < segments_.size()) offer(nearest);
    for (std::size_t node = 0; node < boxes_.size();) {
        const Box& box = boxes_[node];
        const double dx = std::max({box.low.x - p.x, p.x - box.high.x, 0.0});
        const double dy = std::max({box.low.y - p.y, p.y - box.high.y, 0.0});
        // Measuring errs by a few roundings of the distance plus the length of a segment, which is at most a
        // cell's diagonal: 1e-12 is far more.
        const double squared = (dx * dx + dy * dy) * (1 - 1e-12) - 1e-12;
        if (squared > best + 1e-12 * std::sqrt(best)) {
            node = box.next;
            continue;
        }
        const bool isLeaf = box.next == node + 1;
        if (isLeaf)
            for (std::size_t i = box.first; i < box.last; ++i) offer(i);
        ++node;
    }
    return best;
}

}  // namespace lset::detail
