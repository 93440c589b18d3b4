#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "band/differences/readers.h"
#include "common/distance/front.h"
#include "common/distance/march.h"

namespace lset::detail {

/// A band under a march (see march): states and distances by the numbers of points, which come into being as
/// they are reached. As on the dense grid the distance entry of a trial point holds its handle. For Estimator
/// see DenseMarch.
template <std::size_t dimensions, class Estimator>
class BandMarch {
 public:
    using Point = int;

    BandMarch(TiledPoints<dimensions>& tiles, BandWorkspace<dimensions>& work,
              const std::array<double, dimensions>& h)
        : tiles_(tiles),
          states_(work.states),
          distances_(work.distances),
          reached_(work.reached),
          limit_(2.1 * *std::max_element(h.begin(), h.end())),
          estimator_(h) {
        work.queue.clear();
        states_.clear();
        distances_.clear();
        reached_.clear();
        makeRoom();
    }

    int id(Point p) const { return p; }
    Point point(int id) const { return id; }
    bool isFar(Point p) const { return states_[at(p)] == kFar; }
    bool isTrial(Point p) const { return states_[at(p)] >= kTrial; }

    template <std::size_t axis = 0, class Visit>
    void forEachNeighbour(Point p, const Visit& visit) {
        visit(neighbourMade<axis, 1>(p), From<axis, -1>());
        visit(neighbourMade<axis, -1>(p), From<axis, 1>());
        if constexpr (axis + 1 < dimensions) forEachNeighbour<axis + 1>(p, visit);
    }

    double reach(Point q, State side) {
        states_[at(q)] = kTrial;
        return estimator_.reach(*this, q, side);
    }
    template <int axis, int step>
    double reachFrom(Point q, From<axis, step>, State side) {
        states_[at(q)] = kTrial;
        return estimator_.template reachFrom<axis, step>(*this, q, side);
    }
    template <int axis, int step>
    double improve(Point q, From<axis, step>, State side, double last) {
        return estimator_.template improve<axis, step>(*this, q, side, last);
    }

    void keepHandle(Point q, MarchQueue::Handle handle) { distances_[at(q)] = handle; }
    MarchQueue::Handle handle(Point q) const { return static_cast<MarchQueue::Handle>(distances_[at(q)]); }

    void accept(Point p, State side, double distance) {
        states_[at(p)] = side;
        distances_[at(p)] = distance;
        reached_.push_back(p);
        if (side != side_) {
            side_ = side;
            allSpread_ = true;
        }
        if (!spreads(distance)) allSpread_ = false;
    }
    // A point without a distance has none to pass on.
    bool spreads(double distance) const { return distance <= limit_ && distance < kNoDistance; }

    /// Whether every point that has become known on this side has looked at its neighbours. Those beyond the
    /// limit do not, so that from then on more neighbours may be new to a point than the one that looks at
    /// it.
    bool haveAllSpread() const { return allSpread_; }

    /// A number that the estimator keeps for a trial point, from 0.
    void keep(Point trial, int number) { states_[at(trial)] = static_cast<signed char>(kTrial + number); }
    int kept(Point trial) const { return states_[at(trial)] - kTrial; }

    /// Whether a point has a state; makes room for it.
    bool isReached(Point p) {
        makeRoom();
        return states_[at(p)] != kFar;
    }

    /// The points that have a distance, in the order in which they got it, and their signed distances.
    const std::vector<Point>& reached() const { return reached_; }
    double signedDistance(Point p) const { return states_[at(p)] * distances_[at(p)]; }

    /// The distance of the neighbour one step (1 or −1) along an axis, which must be known.
    template <int axis, int step>
    double distanceBeside(Point p) const {
        return distances_[at(tiles_.template neighbour<axis, step>(p))];
    }
    /// The same where it may not be known on a side: then null.
    template <int axis, int step>
    const double* known(Point p, int side) const {
        const Point q = tiles_.template neighbour<axis, step>(p);
        const bool isKnown = q != TiledPoints<dimensions>::kNone && states_[at(q)] == side;
        return isKnown ? &distances_[at(q)] : nullptr;
    }

 private:
    static std::size_t at(Point p) { return static_cast<std::size_t>(p); }

    void makeRoom() {
        if (states_.size() == tiles_.size()) return;
        states_.resize(tiles_.size(), kFar);
        distances_.resize(tiles_.size());
    }

    template <int axis, int step>
    Point neighbourMade(Point p) {
        const Point q = tiles_.template neighbourMade<axis, step>(p);
        makeRoom();
        return q;
    }

    TiledPoints<dimensions>& tiles_;
    std::vector<signed char>& states_;
    std::vector<double>& distances_;
    std::vector<Point>& reached_;
    double limit_;
    State side_ = kFar;
    bool allSpread_ = true;
    Estimator estimator_;
};

/// Finds the front of a band, and gives its points their first distances: firstDistance(reader, place).
template <class Reader, class March, class FirstDistance>
class BandFrontFinder {
 public:
    BandFrontFinder(Reader& band, March& march, FirstDistance firstDistance)
        : band_(band), march_(march), firstDistance_(firstDistance) {}

    Front find() {
        band_.forEach([&](const auto&, const auto& here) { look(here); });
        return front_;
    }

 private:
    static constexpr std::size_t dimensions = Reader::dimensions;
    using Place = typename Reader::Place;

    /// All values are read before any point is added.
    void look(const Place& here) {
        const double value = band_.getToWrite(here);
        std::array<Place, dimensions> next;
        std::array<bool, dimensions> nextInside;
        read<0>(here, value, next, nextInside);
        const bool inside = value <= 0;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            if (nextInside[axis] != inside) {
                add(here, inside);
                add(next[axis], nextInside[axis]);
            }
    }

    template <std::size_t axis>
    void read(const Place& here, double value, std::array<Place, dimensions>& next,
              std::array<bool, dimensions>& nextInside) {
        next[axis] = band_.template step<axis, 1>(here);
        nextInside[axis] = (band_.have(next[axis]) ? band_.getToWrite(next[axis]) : value) <= 0;
        if constexpr (axis + 1 < dimensions) read<axis + 1>(here, value, next, nextInside);
    }

    void add(const Place& place, bool inside) {
        const int number = band_.number(place);
        if (march_.isReached(number)) return;
        march_.accept(number, inside ? kInside : kOutside, firstDistance_(band_, place));
        front_.add(number, inside);
    }

    Reader& band_;
    March& march_;
    FirstDistance firstDistance_;
    Front front_;
};

/// Replaces the points of a band by those that a march from its zero crossing reaches, with their signed
/// distances. Leaves it unchanged where a spacing is not positive and finite, so that a march would not end.
template <class Estimator, class Reader, std::size_t dimensions, class FirstDistance>
void marchBand(Reader& band, BandWorkspace<dimensions>& work, const std::array<double, dimensions>& h,
               FirstDistance firstDistance, typename BandStorage<dimensions>::Hash& points) {
    for (const double spacing : h)
        if (!(spacing > 0) || std::isinf(spacing)) return;
    BandMarch<dimensions, Estimator> marched(band.tiles(), work, h);
    const Front front =
        BandFrontFinder<Reader, BandMarch<dimensions, Estimator>, FirstDistance>(band, marched, firstDistance)
            .find();
    march(marched, front.outside, kOutside, work.queue);
    march(marched, front.inside, kInside, work.queue);
    work.result.clear();
    for (const int number : marched.reached())
        work.result.push_back(
            BandStorage<dimensions>::entryOf(band.tiles().point(number), marched.signedDistance(number)));
    replacePoints<dimensions>(points, work.result, band.entries());
}

}  // namespace lset::detail
