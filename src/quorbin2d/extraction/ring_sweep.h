#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include "common/watch.h"
#include "quorbin2d/contours.h"

namespace lset::detail {

/// Chains the segments of contours to rings and gives each hole to the region around it while rows of cells
/// go by, so that neither the field nor points of finished regions need be held. Gives the regions of
/// nestedRings, in its order.
class RingSweep {
 public:
    using TakeRegion = std::function<void(quorbin::Polygon&&)>;
    using TakeLine = std::function<void(quorbin::Ring&&)>;

    /// Without closed borders, lines may end at points on the border, and regions are handed on at the end.
    RingSweep(double xSpace, double ySpace, bool isClosed, TakeRegion takeRegion);

    /// A point in grid-index units. Its number is good until both of its segments have been added.
    int addPoint(const brin::Vec2<double>& at, bool endsLine);

    /// In the order of cells; a point begins one segment and ends another.
    void addSegment(int from, int to);

    /// A point on the upper side of the row of cells under way, from left to right.
    void addCrossing(int point, bool entersInside) { row_.push_back({point, entersInside}); }

    /// Hands on the regions that are whole, in their order, as far as no earlier one is under way.
    void endRow();

    /// Hands on what is left, and lines in the order of their first points.
    void finish(const TakeLine& takeLine, Stretch stretch);

 private:
    static constexpr int kNone = -1, kAtEndOfLine = -2;  // chains of a point that is in none yet
    static constexpr int kUnbounded = 0;  // the region of all that the border cuts, where it is open
    static constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

    struct Node {
        brin::Vec2<double> at;
        int next = kNone;
        int chain = kNone;  // known at both ends of it
    };
    /// Segments in a row that are no ring yet. The first of a ring in the order of cells begins it, and its
    /// first crossing in the order of rows tells what it is.
    struct Chain {
        int head, tail, start;
        std::size_t points;
        std::int64_t firstSegment;
        std::int64_t firstCrossing = kNever;
        int region = kNone;
        bool isHole = false, isOpen = false;
    };
    struct FinishedRing {
        quorbin::Ring ring;
        std::int64_t firstSegment;
        bool isHole;
    };
    /// Chains of what later proves to be one region may begin as regions of their own, of which the first
    /// takes up the others.
    struct Region {
        int parent;
        int chainsUnderWay = 0;
        std::int64_t firstCrossing = kNever;  // of its rings, without area or not
        std::vector<FinishedRing> rings = {};
    };
    struct Crossing {
        int point;
        bool entersInside;
    };

    static constexpr int kChunkBits = 14;

    Node& node(int i) {
        return chunks_[static_cast<std::size_t>(i >> kChunkBits)][i & ((1 << kChunkBits) - 1)];
    }
    Chain& chain(int i) { return chains_[static_cast<std::size_t>(i)]; }
    Region& region(int i) { return regions_[static_cast<std::size_t>(i - firstRegion_)]; }

    int newChain(const Chain& chain);
    int newRegion();
    int rootOf(int region);
    int unite(int one, int other);
    void meetBorder(Chain& chain);
    void join(int before, int after);
    void close(int closed);
    void handOn(Region& whole);

    double xSpace_, ySpace_;
    bool isClosed_;
    TakeRegion takeRegion_;
    std::vector<std::unique_ptr<Node[]>> chunks_;
    int nodeCount_ = 0, freeNode_ = kNone;
    std::vector<Chain> chains_;
    std::vector<int> freeChains_;
    std::deque<Region> regions_;
    int firstRegion_ = 0;
    std::vector<Crossing> row_;
    std::vector<int> endsOfLines_;
    quorbin::Ring closing_;
    std::int64_t segments_ = 0, crossings_ = 0;
};

}  // namespace lset::detail
