#include "quorbin2d/extraction/ring_sweep.h"

#include <algorithm>
#include <utility>

#include "quorbin2d/extraction/scaled_line.h"

namespace lset::detail {

RingSweep::RingSweep(double xSpace, double ySpace, bool isClosed, TakeRegion takeRegion)
    : xSpace_(xSpace), ySpace_(ySpace), isClosed_(isClosed), takeRegion_(std::move(takeRegion)) {
    if (!isClosed_) newRegion();  // the unbounded one, which is under way until the end
}

int RingSweep::addPoint(const brin::Vec2<double>& at, bool endsLine) {
    int i = freeNode_;
    if (i != kNone) {
        freeNode_ = node(i).next;
    } else {
        i = nodeCount_++;
        if (static_cast<std::size_t>(i >> kChunkBits) == chunks_.size())
            chunks_.push_back(std::make_unique<Node[]>(std::size_t{1} << kChunkBits));
    }
    node(i) = {at, kNone, endsLine ? kAtEndOfLine : kNone};
    if (endsLine) endsOfLines_.push_back(i);
    return i;
}

void RingSweep::addSegment(int from, int to) {
    Node &start = node(from), &end = node(to);
    start.next = to;
    const bool isOpen = start.chain == kAtEndOfLine || end.chain == kAtEndOfLine;
    if (start.chain < 0 && end.chain < 0) {
        start.chain = end.chain = newChain({from, to, from, 2, segments_});
    } else if (end.chain < 0) {
        end.chain = start.chain;
        chain(end.chain).tail = to;
        ++chain(end.chain).points;
    } else if (start.chain < 0) {
        start.chain = end.chain;
        chain(end.chain).head = from;
        ++chain(end.chain).points;
    } else if (start.chain == end.chain) {
        close(end.chain);
    } else {
        join(start.chain, end.chain);
    }
    if (isOpen) meetBorder(chain(start.chain));
    ++segments_;
}

int RingSweep::newChain(const Chain& made) {
    if (freeChains_.empty()) {
        chains_.push_back(made);
        return static_cast<int>(chains_.size()) - 1;
    }
    const int i = freeChains_.back();
    freeChains_.pop_back();
    chain(i) = made;
    return i;
}

int RingSweep::newRegion() {
    const int number = firstRegion_ + static_cast<int>(regions_.size());
    regions_.push_back({number});
    return number;
}

int RingSweep::rootOf(int i) {
    while (region(i).parent != i) i = region(i).parent = region(region(i).parent).parent;
    return i;
}

/// The earlier one stays. Counts of chains are added.
int RingSweep::unite(int one, int other) {
    const auto [first, second] = std::minmax({rootOf(one), rootOf(other)});
    if (first == second) return first;
    Region &kept = region(first), &taken = region(second);
    taken.parent = first;
    kept.chainsUnderWay += taken.chainsUnderWay;
    kept.firstCrossing = std::min(kept.firstCrossing, taken.firstCrossing);
    kept.rings.insert(kept.rings.end(), std::make_move_iterator(taken.rings.begin()),
                      std::make_move_iterator(taken.rings.end()));
    std::vector<FinishedRing>().swap(taken.rings);
    return first;
}

void RingSweep::meetBorder(Chain& open) {
    open.isOpen = true;
    if (open.region != kNone) open.region = unite(open.region, kUnbounded);
}

/// Joins two chains where a segment leads from the one to the other. Inside is beside all of a chain, so
/// that both are of one region.
void RingSweep::join(int before, int after) {
    Chain &kept = chain(before), &taken = chain(after);
    kept.tail = taken.tail;
    node(kept.tail).chain = before;
    kept.points += taken.points;
    if (taken.firstSegment < kept.firstSegment) {
        kept.firstSegment = taken.firstSegment;
        kept.start = taken.start;
    }
    if (kept.region != kNone && taken.region != kNone) {
        kept.region = unite(kept.region, taken.region);
        --region(kept.region).chainsUnderWay;
    } else if (taken.region != kNone) {
        kept.region = taken.region;
    }
    if (taken.firstCrossing < kept.firstCrossing) {
        kept.firstCrossing = taken.firstCrossing;
        kept.isHole = taken.isHole;
    }
    if (kept.isOpen || taken.isOpen) meetBorder(kept);
    freeChains_.push_back(after);
}

void RingSweep::close(int closed) {
    const Chain ring = chain(closed);
    closing_.clear();
    for (int i = ring.start; closing_.size() < ring.points;) {
        closing_.push_back(node(i).at);
        const int next = std::exchange(node(i).next, freeNode_);
        freeNode_ = std::exchange(i, next);
    }
    Region& around = region(rootOf(ring.region));
    --around.chainsUnderWay;
    around.firstCrossing = std::min(around.firstCrossing, ring.firstCrossing);
    freeChains_.push_back(closed);
    if (quorbin::area(closing_) == 0) return;
    ScaledLine scaled(xSpace_, ySpace_, closing_.size());
    for (const auto& p : closing_) scaled.add(p);
    around.rings.push_back({scaled.takeRing(), ring.firstSegment, ring.isHole});
}

/// A ring encloses nothing to the left of its first crossing in the order of rows. So it is the outline of a
/// region if it enters the inside there; and if it is a hole, the crossing before it in the row belongs to
/// the region around it.
void RingSweep::endRow() {
    int around = kNone;  // the region to the right of the crossing before
    for (const Crossing& crossing : row_) {
        Chain& crossed = chain(node(crossing.point).chain);
        if (crossed.region == kNone) {
            crossed.firstCrossing = crossings_;
            crossed.isHole = !crossing.entersInside;
            crossed.region = crossed.isOpen          ? kUnbounded
                             : crossing.entersInside ? newRegion()
                             : around != kNone       ? around
                                                     : kUnbounded;
            ++region(rootOf(crossed.region)).chainsUnderWay;
        }
        around = crossing.entersInside ? rootOf(crossed.region) : kNone;
        ++crossings_;
    }
    row_.clear();
    if (!isClosed_) return;
    // What has been taken up by a region before it is gone as soon as that is.
    while (!regions_.empty()) {
        Region& first = regions_.front();
        if (first.parent == firstRegion_) {
            if (first.chainsUnderWay > 0) return;
            handOn(first);
        }
        regions_.pop_front();
        ++firstRegion_;
    }
}

void RingSweep::handOn(Region& whole) {
    std::sort(whole.rings.begin(), whole.rings.end(),
              [](const FinishedRing& a, const FinishedRing& b) { return a.firstSegment < b.firstSegment; });
    quorbin::Polygon polygon;
    for (FinishedRing& finished : whole.rings)
        if (finished.isHole)
            polygon.holes.push_back(std::move(finished.ring));
        else
            polygon.outline = std::move(finished.ring);
    std::vector<FinishedRing>().swap(whole.rings);
    if (!polygon.outline.empty() || !polygon.holes.empty()) takeRegion_(std::move(polygon));
}

void RingSweep::finish(const TakeLine& takeLine, Stretch stretch) {
    if (isClosed_) return;  // the last row has closed all
    std::vector<Region*> whole;
    for (Region& found : regions_)
        if (!found.rings.empty()) whole.push_back(&found);
    std::sort(whole.begin(), whole.end(),
              [](const Region* a, const Region* b) { return a->firstCrossing < b->firstCrossing; });
    constexpr std::size_t kStepsOfARing = 16;
    stretch.expect(kStepsOfARing * (whole.size() + endsOfLines_.size()));
    for (Region* found : whole) {
        handOn(*found);
        stretch.step(kStepsOfARing);
    }

    for (const int first : endsOfLines_) {
        const Chain& line = chain(node(first).chain);
        stretch.step(kStepsOfARing);
        if (line.head != first) continue;
        ScaledLine scaled(xSpace_, ySpace_, line.points);
        for (int i = first; i != kNone; i = node(i).next) scaled.add(node(i).at);
        if (quorbin::Ring points = scaled.takeLine(); points.size() > 1) takeLine(std::move(points));
    }
}

}  // namespace lset::detail
