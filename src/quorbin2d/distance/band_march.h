#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "quorbin2d/distance/estimate.h"
#include "quorbin2d/storage/band_workspace.h"

namespace lset::detail {

/// A band under a march (see march): states and distances by the numbers of points, which come into being as they are
/// reached. As on the dense grid the distance entry of a trial point holds its handle.
class BandMarch2D {
 public:
    using Point = int;
    struct From {};

    BandMarch2D(TiledPoints<2>& tiles, BandWorkspace2D& work, double hx, double hy)
        : tiles_(tiles),
          states_(work.states),
          distances_(work.distances),
          known_(work.known),
          hx_(hx),
          hy_(hy),
          limit_(2.1 * std::max(hx, hy)),
          quadratic_(hx, hy) {
        work.queue.clear();
        states_.clear();
        distances_.clear();
        known_.clear();
        makeRoom();
    }

    int id(Point p) const { return p; }
    Point point(int id) const { return id; }
    bool isFar(Point p) const { return states_[at(p)] == kFar; }
    bool isTrial(Point p) const { return states_[at(p)] == kTrial; }

    template <class Visit>
    void forEachNeighbour(Point p, Visit visit) {
        visit(neighbour<1, 0>(p), From());
        visit(neighbour<-1, 0>(p), From());
        visit(neighbour<0, 1>(p), From());
        visit(neighbour<0, -1>(p), From());
    }

    double reach(Point q, State side) {
        states_[at(q)] = kTrial;
        return estimate(q, side);
    }
    // Points beyond the limit become known without a look at their neighbours, so that any of these may be new.
    double reachFrom(Point q, From, State side) { return reach(q, side); }
    double improve(Point q, From, State side, double) const { return estimate(q, side); }

    void keepHandle(Point q, MarchQueue::Handle handle) { distances_[at(q)] = handle; }
    MarchQueue::Handle handle(Point q) const { return static_cast<MarchQueue::Handle>(distances_[at(q)]); }

    void accept(Point p, State side, double distance) {
        states_[at(p)] = side;
        distances_[at(p)] = distance;
        known_.push_back(p);
    }
    bool spreads(double distance) const { return !(distance > limit_); }

    /// A point of the front; false if it is one already.
    bool isKnown(Point p) {
        makeRoom();
        return states_[at(p)] != kFar;
    }

    /// The points that have a distance, in the order in which they got it, and their signed distances.
    const std::vector<Point>& known() const { return known_; }
    double signedDistance(Point p) const { return states_[at(p)] * distances_[at(p)]; }

 private:
    static std::size_t at(Point p) { return static_cast<std::size_t>(p); }

    void makeRoom() {
        if (states_.size() == tiles_.size()) return;
        states_.resize(tiles_.size(), kFar);
        distances_.resize(tiles_.size());
    }

    template <int dx, int dy>
    Point neighbour(Point p) {
        const Point q = tiles_.neighbourMade<dx == 0, dx + dy>(p);
        makeRoom();
        return q;
    }

    struct Neighbours {
        const BandMarch2D& march;
        Point p;
        State sign;

        template <int dx, int dy>
        bool isKnown() const {
            const Point q = march.tiles_.neighbour<dx == 0, dx + dy>(p);
            return q != TiledPoints<2>::kNone && march.states_[at(q)] == sign;
        }
        template <int dx, int dy>
        double distance() const {
            return march.distances_[at(march.tiles_.neighbour<dx == 0, dx + dy>(p))];
        }
    };

    double estimate(Point q, State side) const {
        return estimateFrom(Neighbours{*this, q, side}, hx_, hy_, quadratic_).distance;
    }

    TiledPoints<2>& tiles_;
    std::vector<signed char>& states_;
    std::vector<double>& distances_;
    std::vector<Point>& known_;
    double hx_, hy_, limit_;
    EikonalQuadratic2D quadratic_;
};

}  // namespace lset::detail
