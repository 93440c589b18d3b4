#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "band/storage/tiled_points.h"
#include "common/distance/continued_block.h"
#include "common/stepped.h"
#include "common/storage/nearest.h"

namespace lset::detail {

/// A band laid out by tiles as FootFinder and ClosestFeet see it: values by number, which is stored where a
/// bit of its tile says so. Points that feet spread to are made.
template <std::size_t dims>
class TiledLattice {
 public:
    static constexpr std::size_t dimensions = dims;
    using Tiles = TiledPoints<dimensions>;
    using Point = typename Tiles::Point;

    struct Site {
        Point at;
        int number;
    };

    TiledLattice(Tiles& tiles, const std::vector<double>& values, const std::vector<std::uint64_t>& stored,
                 std::vector<Nearest>& nearest)
        : tiles_(tiles), values_(values), stored_(stored), nearest_(nearest) {
        nearest_.assign(tiles_.size(), Nearest());
    }

    using Place = int;

    static Place placeOf(const Site& site) { return site.number; }
    Site siteAt(Place number) const { return {tiles_.point(number), number}; }
    Nearest& nearestAt(Place number) { return nearest_[index(number)]; }
    double value(const Site& site) const { return values_[index(site.number)]; }
    Nearest& nearest(const Site& site) { return nearest_[index(site.number)]; }

    /// visit(site of a stored neighbour, axis, step)
    template <class Visit, std::size_t axis = 0>
    void forEachStoredBeside(const Site& site, const Visit& visit) const {
        visitStored<axis, -1>(site, visit);
        visitStored<axis, 1>(site, visit);
        if constexpr (axis + 1 < dimensions) forEachStoredBeside<Visit, axis + 1>(site, visit);
    }

    template <class Visit, std::size_t axis = 0>
    void forEachBeside(const Site& site, const Visit& visit) {
        constexpr std::integral_constant<std::size_t, axis> along;
        visit(made<axis, -1>(site), along, -1);
        visit(made<axis, 1>(site), along, 1);
        if constexpr (axis + 1 < dimensions) forEachBeside<Visit, axis + 1>(site, visit);
    }
    static void prefetchBeside(Place) {}  // tiles are small

    /// See FootFinder. What is not stored on the outside of a block is continued from its middle, where every
    /// sample must be.
    template <class Samples>
    bool block(const Point& first, Samples& samples) const {
        // A block lies in at most two tiles along each axis; by bits, those at its first and its last
        // samples.
        std::array<int, 1U << dimensions> tileOf;
        std::array<unsigned, dimensions> from;  // in the first tile
        for (unsigned which = 0; which < tileOf.size(); ++which) {
            Point p = first;
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                if ((which >> axis & 1) != 0) p[axis] = stepped(p[axis], int{kSide} - 1);
            tileOf[which] = tiles_.tileIfMade(p);
        }
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            from[axis] = static_cast<unsigned>(first[axis]) & (kTileSide - 1);
        std::uint64_t missing = 0;
        for (unsigned row = 0; row < samples.size() / kSide; ++row) {
            unsigned which = 0, place = 0;
            for (std::size_t axis = 1; axis < dimensions; ++axis) {
                const unsigned c = from[axis] + (row >> (2 * (axis - 1)) & (kSide - 1));
                which |= (c >> kBits) << axis;
                place |= (c & (kTileSide - 1)) << (kBits * axis);
            }
            const int here = tileOf[which], beyond = tileOf[which | 1];
            for (unsigned x = 0; x < kSide; ++x) {
                const unsigned c = from[0] + x;
                const int tile = c < kTileSide ? here : beyond;
                const unsigned i = row * kSide + x, inTile = place | (c & (kTileSide - 1));
                if (tile == Tiles::kNone || !isStored(static_cast<std::size_t>(tile), inTile)) {
                    missing |= std::uint64_t{1} << i;
                    continue;
                }
                samples[i] = values_[static_cast<std::size_t>(tile) * Tiles::kTileSize + inTile];
            }
        }
        return missing == 0 || continueInto<dimensions>(missing, samples);
    }

    bool isStored(const Point& p) const {
        const int tile = tiles_.tileIfMade(p);
        return tile != Tiles::kNone && isStored(static_cast<std::size_t>(tile), Tiles::placeInTile(p));
    }
    bool isStored(int number) const {
        return isStored(index(number) / Tiles::kTileSize, static_cast<unsigned>(number) % Tiles::kTileSize);
    }

 private:
    static constexpr unsigned kSide = 4;
    static constexpr unsigned kBits = 6 / dimensions, kTileSide = 1U << kBits;

    bool isStored(std::size_t tile, unsigned inTile) const {
        return tile < stored_.size() && (stored_[tile] >> inTile & 1) != 0;
    }

    static std::size_t index(int number) { return static_cast<std::size_t>(number); }

    template <int axis, int step, class Visit>
    void visitStored(const Site& site, const Visit& visit) const {
        const int number = tiles_.template neighbour<axis, step>(site.number);
        if (number == Tiles::kNone || !isStored(number)) return;
        Site beside = site;
        beside.at[axis] = stepped(site.at[axis], step);
        beside.number = number;
        visit(beside, axis, step);
    }

    template <int axis, int step>
    Site made(const Site& site) {
        Site beside = site;
        beside.at[axis] = stepped(site.at[axis], step);
        beside.number = tiles_.template neighbour<axis, step>(site.number);
        if (beside.number == Tiles::kNone) {
            beside.number = tiles_.number(beside.at);
            nearest_.resize(tiles_.size());
        }
        return beside;
    }

    Tiles& tiles_;
    const std::vector<double>& values_;
    const std::vector<std::uint64_t>& stored_;
    std::vector<Nearest>& nearest_;
};

}  // namespace lset::detail
