#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "common/storage/nearest.h"
#include "common/vector.h"

namespace lset::detail {

/// Spreads feet from the points beside the interface to those around them, each of which keeps the nearest
/// foot that a neighbour on its side has, and of two that are as near the one that
/// comes first, or has the lower number. Points
/// pass their feet on in rounds, nearest first, and a round depends on the one before it alone: the outcome
/// does not depend on the order within a round. Lattice has
///
///     Site                                 a point: its coordinates are site.at
///     forEachBeside(site, visit)           visit(site of a neighbour, axis as a constant, step)
///     nearest(site)                        what is known of a point, a Nearest&
template <class Lattice>
class ClosestFeet {
 public:
    static constexpr std::size_t dimensions = Lattice::dimensions;
    using Site = typename Lattice::Site;

    ClosestFeet(Lattice& lattice, const Vector<dimensions>& h) : lattice_(lattice), h_(h) {}

    /// A point beside the interface, with its foot.
    void start(const Site& site, bool isOutside, const Vector<dimensions>& foot) {
        auto& nearest = lattice_.nearest(site);
        nearest.fix(isOutside, static_cast<std::uint32_t>(feet_.size()));
        nearest.setWaiting(true);
        feet_.push_back(foot);
        pending_.push_back(site);
    }

    /// Up to the points whose foot is at most so far away; they have neighbours with feet. watch.step() is
    /// called for each point that passes its foot on.
    template <class Watch>
    void spread(double farthest, Watch& watch) {
        const double layer = *std::max_element(h_.begin(), h_.end());
        std::vector<Site> later;
        for (double limit = layer; !pending_.empty(); limit += layer) {
            const bool isLast = limit >= farthest;
            const double within = isLast ? farthest * farthest : limit * limit;
            while (!pending_.empty()) {
                beginRound();
                for (std::size_t i = 0; i < round_.size(); ++i) {
                    constexpr std::size_t kAhead = 8;
                    if (i + kAhead < round_.size()) lattice_.prefetchBeside(round_[i + kAhead].site);
                    passOn(round_[i]);
                    watch.step();
                }
                // What lies beyond the limit waits for the others.
                pending_.clear();
                for (const Site& site : changed_)
                    (squaredTo(site, lattice_.nearest(site).foot()) <= within ? pending_ : later)
                        .push_back(site);
            }
            if (isLast) return;
            pending_.swap(later);
        }
    }

 private:
    struct Spreading {
        Site site;
        Nearest nearest;
    };

    /// All pass on what they know at its beginning.
    void beginRound() {
        round_.clear();
        changed_.clear();
        for (const Site& site : pending_) {
            auto& nearest = lattice_.nearest(site);
            nearest.setWaiting(false);
            round_.push_back({site, nearest});
        }
    }

    void passOn(const Spreading& from) {
        const std::uint32_t foot = from.nearest.foot();
        const bool isOutside = from.nearest.isOutside();
        // Squared distances are sums over axes, of which all but one are those of this point.
        Vector<dimensions> squares;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            squares[axis] = squareAlong(axis, from.site, foot);
        lattice_.forEachBeside(from.site, [&](const Site& to, auto axis, int) {
            auto& nearest = lattice_.nearest(to);
            const std::uint32_t known = nearest.foot();
            if (known == foot || !nearest.accepts(isOutside)) return;
            if (known != Nearest::kNone) {
                Vector<dimensions> there = squares;
                there[axis] = squareAlong(axis, to, foot);
                const double now = squaredTo(to, known), then = sumOf(there);
                // In ties the foot that came in an earlier round stays: it came from nearer by.
                if (!(then < now) && !(then == now && nearest.isWaiting() && foot < known)) return;
            }
            nearest.take(foot, isOutside);
            if (nearest.isWaiting()) return;
            nearest.setWaiting(true);
            changed_.push_back(to);
        });
    }

    double squareAlong(std::size_t axis, const Site& site, std::uint32_t foot) const {
        const double d = h_[axis] * site.at[axis] - feet_[foot][axis];
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
    Vector<dimensions> h_;
    std::vector<Vector<dimensions>> feet_;
    std::vector<Site> pending_, changed_;
    std::vector<Spreading> round_;
};

}  // namespace lset::detail
