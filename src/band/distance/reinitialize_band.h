#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

#include "band/differences/readers.h"
#include "band/distance/front_bits.h"
#include "band/distance/tiled_lattice.h"
#include "band/storage/band_access.h"
#include "band/storage/feet_space.h"
#include "band/storage/workspace.h"
#include "common/distance/closest_feet.h"
#include "common/distance/foot_finder.h"
#include "common/distance/reinitialize_checks.h"
#include "common/storage/huge_pages.h"
#include "common/watch.h"

namespace lset::detail {

/// The signed distances of the points around the zero level of a band that is laid out by tiles (see
/// quorbin::reinitialize). values and stored are by number and by tile; tiles get the points that are
/// reached.
template <std::size_t dimensions>
class BandReinitialization {
 public:
    using Tiles = TiledPoints<dimensions>;
    using Lattice = TiledLattice<dimensions>;
    using Site = typename Lattice::Site;
    using Bits = std::uint64_t;

    BandReinitialization(Tiles& tiles, const std::vector<double>& values, const std::vector<Bits>& stored,
                         FeetSpace<dimensions>& space, const Vector<dimensions>& h)
        : values_(values),
          stored_(stored),
          space_(space),
          h_(h),
          smallest_(*std::min_element(h.begin(), h.end())),
          lattice_(tiles, values, stored, space.nearest),
          closest_(lattice_, space.lists, h),
          frontBits_(tiles, space.inside, stored) {}

    /// Finds the feet of all points within this distance of the interface and of their neighbours; whether
    /// there are any.
    bool run(double farthest, const Stretch& stretch) {
        space_.feet.clear();
        space_.distances.clear();
        setInside();
        findFront(stretch.part(0, 0.5));
        if (space_.feet.empty()) return false;
        Stretch spreading = stretch.part(0.5, 1);
        spreading.expect(4 * space_.nearest.size());
        closest_.spread(farthest, spreading);
        return true;
    }

    /// visit(number, coordinates, signed distance) for each of the points.
    template <class Visit>
    void forEachDistance(const Visit& visit, Stretch stretch, OldValues old = OldValues::kTrusted) const {
        stretch.expect(space_.nearest.size());
        for (std::size_t number = 0; number < space_.nearest.size(); ++number) {
            stretch.step();
            const Nearest nearest = space_.nearest[number];
            const std::uint32_t foot = nearest.foot();
            if (foot == Nearest::kNone) continue;
            const Site site = lattice_.siteAt(static_cast<int>(number));
            const Vector<dimensions> world = worldOf(site.at, h_);
            const bool isStored = lattice_.isStored(site.number);
            if (!isStored && isBeyondEnd(space_.feet[foot], world)) continue;
            const bool isKnown = isStored && old == OldValues::kTrusted;
            const double value = isKnown ? values_[number] : std::numeric_limits<double>::quiet_NaN();
            const double distance =
                nearest.isFixed() ? space_.distances[foot] : distanceFrom(space_.feet[foot], world, value);
            const bool isOutside = isStored || !space_.feet[foot].isSmooth
                                       ? nearest.isOutside()
                                       : isBeyond(space_.feet[foot], world);
            visit(site.number, site.at, Nearest::signedDistance(isOutside, distance));
        }
    }

 private:
    /// The bits of the points whose value is ≤ 0, which not-a-number is not.
    void setInside() {
        space_.inside.assign(stored_.size(), 0);
        const double* value = values_.data();
        for (Bits& bits : space_.inside)
            for (int place = 0; place < Tiles::kTileSize; ++place) bits |= Bits{*value++ <= 0} << place;
    }

    /// Finds the points beside the interface, and makes room for their feet.
    void setFront() {
        space_.front.resize(stored_.size());
        std::size_t count = 0;
        for (std::size_t tile = 0; tile < stored_.size(); ++tile) {
            space_.front[tile] = frontBits_.of(tile);
            count += static_cast<std::size_t>(__builtin_popcountll(space_.front[tile]));
        }
        checkFootCount(count);
        makeRoomFor(count, space_.feet);
        makeRoomFor(count, space_.distances);
        closest_.expect(count);
    }

    void findFront(Stretch stretch) {
        setFront();
        stretch.expect(stored_.size() * Tiles::kTileSize);
        FootFinder<Lattice> finder(lattice_, h_);
        for (std::size_t tile = 0; tile < stored_.size(); ++tile) {
            const Bits inside = space_.inside[tile];
            for (Bits left = stored_[tile]; left != 0; left &= left - 1) {
                const int place = __builtin_ctzll(left);
                space_.nearest[tile * Tiles::kTileSize + static_cast<std::size_t>(place)].reset(
                    (inside >> place & 1) == 0);
            }
            if (space_.front[tile] != 0) lattice_.enter(tile);
            for (Bits front = space_.front[tile]; front != 0; front &= front - 1)
                addToFront(finder, static_cast<int>(tile) * Tiles::kTileSize + __builtin_ctzll(front));
            constexpr std::size_t kStepsOfAFoot = 32;
            const auto feet = static_cast<std::size_t>(__builtin_popcountll(space_.front[tile]));
            stretch.step(Tiles::kTileSize + kStepsOfAFoot * feet);
        }
    }

    /// Whether a point lies on the outer side of a foot's tangent. Around the edge of a band feet of both
    /// sides reach a point that had no value.
    static bool isBeyond(const Foot<dimensions>& foot, const Vector<dimensions>& p) {
        return dot(difference(p, foot.at), foot.normal) > 0;
    }

    /// Whether a point lies past the edge of the band along the interface, which would grow there without
    /// end.
    bool isBeyondEnd(const Foot<dimensions>& foot, const Vector<dimensions>& p) const {
        if (!foot.isEnd) return false;
        const Vector<dimensions> r = difference(p, foot.at);
        const double along = dot(r, foot.normal), limit = kPastEnd * smallest_;
        return dot(r, r) - along * along > limit * limit;
    }

    /// Whether a neighbour through which the interface must go on, side by side or corner by corner, is not
    /// stored.
    bool isAtEnd(const Site& site, const Foot<dimensions>& foot) const {
        constexpr int kAround = dimensions == 2 ? 9 : 27;
        for (int i = 0; i < kAround; ++i) {
            typename Tiles::Point p = site.at;
            int rest = i;
            for (int& c : p) {
                c = stepped(c, rest % 3 - 1);
                rest /= 3;
            }
            const double distance = dot(difference(worldOf(p, h_), foot.at), foot.normal);
            if (std::abs(distance) <= 0.5 * smallest_ && !lattice_.isStored(p)) return true;
        }
        return false;
    }

    void addToFront(FootFinder<Lattice>& finder, int number) {
        const Site site = lattice_.siteAt(number);
        const double value = lattice_.value(site);
        AxisCrossings<dimensions> crossings;
        std::size_t neighbours = 0;
        lattice_.forEachStoredBeside(site, [&](const Site& beside, std::size_t axis, int step) {
            ++neighbours;
            crossings.look(value, lattice_.value(beside), axis, step, h_[axis]);
        });
        space_.feet.emplace_back();
        space_.distances.push_back(finder.find(site.at, value, crossings, space_.feet.back()));
        if (neighbours < 2 * dimensions) space_.feet.back().isEnd = isAtEnd(site, space_.feet.back());
        closest_.start(site, !(value <= 0), space_.feet.back().at);
    }

    static constexpr double kPastEnd = 0.25;

    const std::vector<double>& values_;
    const std::vector<Bits>& stored_;
    FeetSpace<dimensions>& space_;
    Vector<dimensions> h_;
    double smallest_;
    Lattice lattice_;
    ClosestFeet<Lattice> closest_;
    FrontBits<dimensions> frontBits_;
};

/// How far a march spreads in a band with these spacings.
template <std::size_t dimensions>
double marchedWidth(const Vector<dimensions>& h) {
    return 2.1 * *std::max_element(h.begin(), h.end());
}

/// See quorbin::reinitialize; width is that of its options. Where it is ended, the band is as it was.
template <class Band>
void reinitializeBand(Band& band, double width, const Stretch& stretch, OldValues old = OldValues::kTrusted) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    const auto h = BandTraits<Band>::spacings(band);
    checkSpacings<dimensions>(h);
    if (!(width >= 0) || std::isinf(width))
        throw std::invalid_argument("the width of a band must be a finite number, and at least 0");
    if (width == 0) width = marchedWidth<dimensions>(h);
    auto& work = BandAccess::work(band);
    work.copy(band.points(), stretch.part(0, 0.2));
    BandReinitialization<dimensions> made(work.tiles, work.values, work.stored, work.feet, h);
    if (!made.run(width, stretch.part(0.2, 0.6))) throwNoInterface();
    const auto forEachPoint = [&](const auto& add) {
        made.forEachDistance([&](int, const auto& p, double distance) { add(p, distance); },
                             stretch.part(0.6, 1), old);
    };
    replacePointsBy<dimensions>(BandAccess::values(band), forEachPoint, work.inOrder);
}

template <class Band>
bool reinitializeBandUnlessEnded(Band& band, const quorbin::ReinitializeOptions& options) {
    return isDoneToTheEnd(options.progress,
                          [&](const Stretch& whole) { reinitializeBand(band, options.width, whole); });
}

}  // namespace lset::detail
