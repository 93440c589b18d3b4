#pragma once

#include <algorithm>
#include <array>
#include <cassert>
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

    /// Must come before blocks around the points of a tile are read: finds the tiles around it.
    void enter(std::size_t tile) {
        const Point corner = tiles_.point(static_cast<int>(tile) * Tiles::kTileSize);
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            origin_[axis] = stepped(corner[axis], -static_cast<int>(kTileSide));
        for (std::size_t i = 0; i < around_.size(); ++i) {
            Point p = origin_;
            std::size_t rest = i;
            for (int& c : p) {
                c = stepped(c, static_cast<int>(rest % 3 * kTileSide));
                rest /= 3;
            }
            const int found = tiles_.tileIfMade(p);
            const bool isThere = found != Tiles::kNone && index(found) < stored_.size();
            around_[i].values = &values_[isThere ? index(found) * Tiles::kTileSize : 0];
            around_[i].stored = isThere ? stored_[index(found)] : 0;
        }
    }

    /// See FootFinder. The block must lie in the tile that was entered and those around it. What is not
    /// stored on the outside of a block is continued from its middle, where every sample must be.
    template <class Samples>
    bool block(const Point& first, Samples& samples) const {
        std::array<unsigned, dimensions> tile, from;  // of its first sample: by tiles, and in its tile
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const unsigned c = static_cast<unsigned>(first[axis]) - static_cast<unsigned>(origin_[axis]);
            tile[axis] = c >> kBits;
            from[axis] = c & (kTileSide - 1);
        }
        assert(std::all_of(tile.begin(), tile.end(), [](unsigned t) { return t < 3; }));
        // A row of samples lies in one tile or in two.
        std::uint64_t missing = 0;
        if (from[0] + kSide <= kTileSide) missing = gather<kSide>(tile, from, samples);
        if (from[0] + kSide == kTileSide + 1) missing = gather<kSide - 1>(tile, from, samples);
        if (from[0] + kSide == kTileSide + 2) missing = gather<kSide - 2>(tile, from, samples);
        if (from[0] + kSide == kTileSide + 3) missing = gather<kSide - 3>(tile, from, samples);
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

    struct Around {
        const double* values;
        std::uint64_t stored;
    };

    /// Copies a block of which so many samples of each row lie in its first tile along the first axis; those
    /// that are missing, as bits.
    template <unsigned inFirst, class Samples>
    std::uint64_t gather(const std::array<unsigned, dimensions>& tile,
                         const std::array<unsigned, dimensions>& from, Samples& samples) const {
        constexpr unsigned kRow = (1U << kSide) - 1, kInFirst = (1U << inFirst) - 1;
        std::uint64_t present = 0;
        for (unsigned row = 0; row < samples.size() / kSide; ++row) {
            unsigned which = tile[0], place = 0, stride = 3;
            for (std::size_t axis = 1; axis < dimensions; ++axis, stride *= 3) {
                const unsigned c = from[axis] + (row >> (2 * (axis - 1)) & (kSide - 1));
                which += (tile[axis] + (c >> kBits)) * stride;
                place |= (c & (kTileSide - 1)) << (kBits * axis);
            }
            const Around& here = around_[which];
            double* const target = &samples[row * kSide];
            const double* const source = here.values + (place + from[0]);
            std::uint64_t bits = here.stored >> (place + from[0]) & kInFirst;
            for (unsigned x = 0; x < inFirst; ++x) target[x] = source[x];
            if constexpr (inFirst < kSide) {
                const Around& beyond = around_[which + 1];
                bits |= (beyond.stored >> place << inFirst) & (kRow & ~kInFirst);
                for (unsigned x = inFirst; x < kSide; ++x) target[x] = beyond.values[place + x - inFirst];
            }
            present |= bits << (row * kSide);
        }
        constexpr std::uint64_t kAll = ~std::uint64_t{0} >> (64 - 16 * (dimensions == 2 ? 1 : 4));
        return ~present & kAll;
    }

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
    Point origin_{};                                       // of the tiles around the one that was entered
    std::array<Around, dimensions == 2 ? 9 : 27> around_;  // these
};

}  // namespace lset::detail
