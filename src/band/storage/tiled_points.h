#pragma once

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

#include "common/stepped.h"

namespace lset::detail {

/// Numbers for scattered grid points such that neighbours are found without searching: the plane or space is
/// cut into tiles of 64 points, tiles are made where points are, and each knows the tiles beside it. The
/// number of a point is 64 times that of its tile and its place within. What belongs to points lies in arrays
/// by their numbers.
template <std::size_t dimensions>
class TiledPoints {
 public:
    using Point = std::array<int, dimensions>;
    static constexpr int kTileSize = 64;
    static constexpr int kNone = -1;

    TiledPoints() : slots_(64, kNone) {}

    /// Forgets all points and keeps the memory.
    void clear() {
        corners_.clear();
        beside_.clear();
        std::fill(slots_.begin(), slots_.end(), kNone);
        lastTile_ = 0;
    }

    std::size_t tileCount() const { return corners_.size(); }
    std::size_t size() const { return tileCount() * kTileSize; }

    /// The number of a point, whose tile is made where it is missing.
    int number(const Point& point) {
        const Corner corner = cornerOf(point);
        int tile = corners_.empty() || !isSame(corners_[lastTile_], corner) ? find(corner)
                                                                            : static_cast<int>(lastTile_);
        if (tile == kNone) tile = make(corner);
        lastTile_ = static_cast<std::size_t>(tile);
        return tile * kTileSize + place(point);
    }

    /// Which of the points of its tile one is, from 0.
    static unsigned placeInTile(const Point& point) { return static_cast<unsigned>(place(point)); }
    /// The tile of a point, kNone where it is missing.
    int tileIfMade(const Point& point) const { return find(cornerOf(point)); }
    /// The tile beside one, a step (1 or −1) along an axis; kNone where it is missing.
    template <int axis, int step>
    int tileBeside(int tile) const {
        return beside_[static_cast<std::size_t>(tile)][direction<axis, step>()];
    }

    Point point(int number) const {
        const Corner& corner = corners_[static_cast<std::size_t>(number) / kTileSize];
        Point result;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const unsigned inTile = static_cast<unsigned>(number) >> (kBits * axis) & (kSide - 1);
            result[axis] = static_cast<int>(corner[axis] << kBits | inTile);
        }
        return result;
    }

    /// The number of the neighbour one step (1 or -1) along an axis; kNone where its tile is missing.
    template <int axis, int step>
    int neighbour(int number) const {
        constexpr int kStride = 1 << (kBits * axis), kAlong = static_cast<int>(kSide - 1) * kStride;
        if ((number & kAlong) != (step > 0 ? kAlong : 0)) return number + step * kStride;
        const int beside = beside_[static_cast<std::size_t>(number) / kTileSize][direction<axis, step>()];
        if (beside == kNone) return kNone;
        const int inTile = number & (kTileSize - 1);
        return beside * kTileSize + (step > 0 ? inTile & ~kAlong : inTile | kAlong);
    }

    /// The same; makes the tile where it is missing.
    template <int axis, int step>
    int neighbourMade(int number) {
        const int found = neighbour<axis, step>(number);
        if (found != kNone) return found;
        Point next = point(number);
        next[axis] = stepped(next[axis], step);
        return this->number(next);
    }

 private:
    // A tile's coordinates are those of its points without their low bits. Like those they wrap around.
    using Corner = std::array<std::uint32_t, dimensions>;
    static constexpr unsigned kBits = 6 / dimensions;
    static constexpr unsigned kSide = 1U << kBits;

    template <int axis, int step>
    static constexpr std::size_t direction() {
        return 2 * axis + (step > 0 ? 1 : 0);
    }

    static Corner cornerOf(const Point& point) {
        Corner corner;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            corner[axis] = static_cast<std::uint32_t>(point[axis]) >> kBits;
        return corner;
    }

    /// Written out: the operator of std::array calls for a comparison of memory.
    static bool isSame(const Corner& a, const Corner& b) {
        bool same = true;
        for (std::size_t axis = 0; axis < dimensions; ++axis) same &= a[axis] == b[axis];
        return same;
    }

    static int place(const Point& point) {
        unsigned result = 0;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            result |= (static_cast<unsigned>(point[axis]) & (kSide - 1)) << (kBits * axis);
        return static_cast<int>(result);
    }

    std::size_t firstSlot(const Corner& corner) const {
        std::uint64_t mixed = 0;
        for (const std::uint32_t part : corner) mixed = (mixed + part) * 0x9e3779b97f4a7c15U;
        return static_cast<std::size_t>(mixed >> 32) & (slots_.size() - 1);
    }

    /// The slot that holds a tile, or the free one where it would go.
    std::size_t slotOf(const Corner& corner) const {
        std::size_t slot = firstSlot(corner);
        while (slots_[slot] != kNone && !isSame(corners_[static_cast<std::size_t>(slots_[slot])], corner))
            slot = (slot + 1) & (slots_.size() - 1);
        return slot;
    }
    int find(const Corner& corner) const { return slots_[slotOf(corner)]; }

    int make(const Corner& corner) {
        if (size() > INT_MAX - 2 * std::size_t{kTileSize}) throw std::bad_alloc();
        const int tile = static_cast<int>(tileCount());
        slots_[slotOf(corner)] = tile;
        corners_.push_back(corner);
        beside_.emplace_back();
        for (std::size_t d = 0; d < 2 * dimensions; ++d) {
            Corner next = corner;
            next[d / 2] = (next[d / 2] + (d % 2 == 1 ? 1 : ~std::uint32_t{0})) & (~std::uint32_t{0} >> kBits);
            const int other = find(next);
            beside_.back()[d] = other;
            if (other != kNone) beside_[static_cast<std::size_t>(other)][d ^ 1] = tile;
        }
        if (2 * tileCount() > slots_.size()) rehash();
        return tile;
    }

    void rehash() {
        slots_.assign(2 * slots_.size(), kNone);
        for (std::size_t tile = 0; tile < corners_.size(); ++tile)
            slots_[slotOf(corners_[tile])] = static_cast<int>(tile);
    }

    std::vector<Corner> corners_;                          // by tile
    std::vector<std::array<int, 2 * dimensions>> beside_;  // by tile, before and after it along each axis
    std::vector<int> slots_;                               // an open hash table of tiles, a power of two long
    std::size_t lastTile_ = 0;
};

}  // namespace lset::detail
