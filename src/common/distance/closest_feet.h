#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "common/storage/huge_pages.h"
#include "common/storage/nearest.h"
#include "common/storage/spreading_lists.h"
#include "common/vector.h"

namespace lset::detail {

/// Spreads feet from the points beside the interface to those around them, each of which keeps the nearest
/// foot that a neighbour on its side has, and of two that are as near the one that comes first, or has the
/// lower number. Points pass their feet on in rounds, nearest first, and a round depends on the one before it
/// alone: the outcome does not depend on the order within a round. Lattice has
///
///     Site                                 a point: its coordinates are site.at
///     Place                                which point it is, to keep: placeOf(site), siteAt(place)
///     forEachBeside(site, visit)           visit(site of a neighbour, axis as a constant, step)
///     nearest(site)                        what is known of a point, a Nearest&
template <class Lattice>
class ClosestFeet {
 public:
    static constexpr std::size_t dimensions = Lattice::dimensions;
    using Site = typename Lattice::Site;
    using Place = typename Lattice::Place;
    using Lists = SpreadingLists<Place, dimensions>;

    /// The lists are only memory to work in.
    ClosestFeet(Lattice& lattice, Lists& lists, const Vector<dimensions>& h)
        : lattice_(lattice), lists_(lists), h_(h) {
        lists.clear();
    }

    /// Makes room for so many points beside the interface.
    void expect(std::size_t count) {
        makeRoomFor(count, lists_.feet);
        makeRoomFor(count, lists_.pending);
    }

    /// A point beside the interface, with its foot.
    void start(const Site& site, bool isOutside, const Vector<dimensions>& foot) {
        auto& nearest = lattice_.nearest(site);
        nearest.fix(isOutside, static_cast<std::uint32_t>(lists_.feet.size()));
        nearest.setWaiting(true);
        lists_.feet.push_back(foot);
        lists_.pending.push_back(Lattice::placeOf(site));
    }

    /// Up to the points whose foot is at most so far away; they have neighbours with feet. watch.step() is
    /// called twice for each point that passes its foot on.
    template <class Watch>
    void spread(double farthest, Watch& watch) {
        const double layer = *std::max_element(h_.begin(), h_.end());
        auto& [feet, pending, changed, later, round] = lists_;
        for (double limit = layer; !pending.empty(); limit += layer) {
            const bool isLast = limit >= farthest;
            const double within = isLast ? farthest * farthest : limit * limit;
            while (!pending.empty()) {
                beginRound();
                for (std::size_t i = 0; i < round.size(); ++i) {
                    constexpr std::size_t kAhead = 8;
                    if (i + kAhead < round.size()) lattice_.prefetchBeside(round[i + kAhead].place);
                    passOn(lattice_.siteAt(round[i].place), round[i].nearest);
                    watch.step();
                }
                // What lies beyond the limit waits for the others.
                pending.clear();
                for (const Place& place : changed) {
                    const Site site = lattice_.siteAt(place);
                    if (squaredTo(site, lattice_.nearest(site).foot()) <= within)
                        pending.push_back(place);
                    else if (!isLast)
                        later.push_back(place);
                    watch.step();
                }
            }
            if (isLast) return;
            pending.swap(later);
        }
    }

 private:
    /// All pass on what they know at its beginning.
    void beginRound() {
        lists_.round.clear();
        lists_.changed.clear();
        for (const Place& place : lists_.pending) {
            auto& nearest = lattice_.nearestAt(place);
            nearest.setWaiting(false);
            lists_.round.push_back({place, nearest});
        }
    }

    void passOn(const Site& from, Nearest known) {
        const std::uint32_t foot = known.foot();
        const bool isOutside = known.isOutside();
        // Squared distances are sums over axes, of which all but one are those of this point.
        Vector<dimensions> squares;
        for (std::size_t axis = 0; axis < dimensions; ++axis) squares[axis] = squareAlong(axis, from, foot);
        lattice_.forEachBeside(from, [&](const Site& to, auto axis, int) {
            auto& nearest = lattice_.nearest(to);
            const std::uint32_t other = nearest.foot();
            if (other == foot || !nearest.accepts(isOutside)) return;
            if (other != Nearest::kNone) {
                Vector<dimensions> there = squares;
                there[axis] = squareAlong(axis, to, foot);
                const double now = squaredTo(to, other), then = sumOf(there);
                // In ties the foot that came in an earlier round stays: it came from nearer by.
                if (!(then < now) && !(then == now && nearest.isWaiting() && foot < other)) return;
            }
            nearest.take(foot, isOutside);
            if (nearest.isWaiting()) return;
            nearest.setWaiting(true);
            lists_.changed.push_back(Lattice::placeOf(to));
        });
    }

    double squareAlong(std::size_t axis, const Site& site, std::uint32_t foot) const {
        const double d = h_[axis] * site.at[axis] - lists_.feet[foot][axis];
        return d * d;
    }
    static double sumOf(const Vector<dimensions>& squares) {
        double sum = squares[0];
        for (std::size_t axis = 1; axis < dimensions; ++axis) sum += squares[axis];
        return sum;
    }
    double squaredTo(const Site& site, std::uint32_t foot) const {
        Vector<dimensions> squares;
        for (std::size_t axis = 0; axis < dimensions; ++axis) squares[axis] = squareAlong(axis, site, foot);
        return sumOf(squares);
    }

    Lattice& lattice_;
    Lists& lists_;
    Vector<dimensions> h_;
};

}  // namespace lset::detail
