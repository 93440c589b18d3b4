#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "common/flows/flow_lattice.h"

namespace lset::detail {

/// Where the points of a band were before a step, in tiles of single precision, and on which side all other
/// points of the grid lie.
template <class Lattice>
class FlowMap {
 public:
    static constexpr std::size_t dimensions = Lattice::dimensions;
    using Point = typename Lattice::Point;
    using Site = typename Lattice::Site;

    explicit FlowMap(const Lattice& lattice) : lattice_(lattice), isInside_(lattice.count()) {
        std::size_t tiles = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            tilesAlong_[axis] = static_cast<std::size_t>((lattice.sizes[axis] + kSide - 1) / kSide);
            tiles *= tilesAlong_[axis];
        }
        tiles_.assign(tiles, kNone);
    }

    /// Of a point of the band: where it was.
    void set(const Site& site, const Point& before) {
        std::uint32_t& tile = tiles_[tileOf(site)];
        if (tile == kNone) {
            tile = static_cast<std::uint32_t>(moved_.size() / kTileSize);
            moved_.resize(moved_.size() + kTileSize, std::numeric_limits<float>::quiet_NaN());
        }
        float* const moved = &moved_[tile * kTileSize + dimensions * placeInTile(site)];
        const Point here = lattice_.placeOf(site);
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            const int a = static_cast<int>(axis);
            moved[axis] = static_cast<float>((before[a] - here[a]) / lattice_.h[axis]);
        }
    }
    void setSide(std::size_t index, bool isInside) { isInside_[index] = isInside; }

    bool has(const Site& site) const {
        const std::uint32_t tile = tiles_[tileOf(site)];
        return tile != kNone && !std::isnan(moved_[tile * kTileSize + dimensions * placeInTile(site)]);
    }
    /// Where a point of the band was.
    Point before(const Site& site) const {
        const float* const moved = &moved_[tiles_[tileOf(site)] * kTileSize + dimensions * placeInTile(site)];
        Point place = lattice_.placeOf(site);
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            place[static_cast<int>(axis)] += lattice_.h[axis] * static_cast<double>(moved[axis]);
        return place;
    }
    /// The side of the point of the grid that is nearest to a place.
    bool isInsideAt(const Point& place) const {
        return isInside_[lattice_.indexOf(lattice_.nearestTo(place))];
    }

    /// Takes a place in the grid back to where it was; false, with the place as it is, where the map does not
    /// reach.
    bool takeBack(Point& place) const {
        const auto block = lattice_.blockAt(place);
        std::array<double, dimensions> sum{};
        if constexpr (dimensions == 2) {
            if (!addLayer(block, 0, 1, sum)) return false;
        } else {
            for (int k = 0; k < 4; ++k)
                if (!addLayer(block, k, block.weights[2][static_cast<std::size_t>(k)], sum)) return false;
        }
        if (std::isnan(sum[0])) return false;
        for (std::size_t axis = 0; axis < dimensions; ++axis)
            place[static_cast<int>(axis)] += lattice_.h[axis] * sum[axis];
        return true;
    }

    std::size_t bytes() const {
        return moved_.capacity() * sizeof(float) + tiles_.capacity() * sizeof(std::uint32_t) +
               isInside_.size() / 8;
    }

 private:
    static constexpr int kSide = 8;
    static constexpr std::size_t kTileSize = dimensions * (dimensions == 2 ? 64 : 512);
    static constexpr std::uint32_t kNone = UINT32_MAX;

    std::size_t tileOf(const Site& site) const {
        std::size_t tile = 0;
        for (std::size_t axis = dimensions; axis-- > 0;)
            tile = tile * tilesAlong_[axis] + static_cast<std::size_t>(site[axis] / kSide);
        return tile;
    }
    static std::size_t placeInTile(const Site& site) {
        std::size_t place = 0;
        for (std::size_t axis = dimensions; axis-- > 0;)
            place = place * kSide + static_cast<std::size_t>(site[axis] % kSide);
        return place;
    }

    /// Adds a layer of four rows of a block; false where a tile is missing.
    bool addLayer(const typename Lattice::Block& block, int k, double weight,
                  std::array<double, dimensions>& sum) const {
        Site site = block.first;
        if constexpr (dimensions == 3) site[2] += k;
        for (int j = 0; j < 4; ++j, ++site[1]) {
            const double w = weight * block.weights[1][static_cast<std::size_t>(j)];
            Site at = site;
            for (int i = 0; i < 4;) {
                const std::uint32_t tile = tiles_[tileOf(at)];
                if (tile == kNone) return false;
                const float* moved = &moved_[tile * kTileSize + dimensions * placeInTile(at)];
                const int stop = std::min(4, i + kSide - at[0] % kSide);
                at[0] += stop - i;
                for (; i < stop; ++i, moved += dimensions) {
                    const double wi = w * block.weights[0][static_cast<std::size_t>(i)];
                    for (std::size_t axis = 0; axis < dimensions; ++axis)
                        sum[axis] += wi * static_cast<double>(moved[axis]);
                }
            }
        }
        return true;
    }

    const Lattice& lattice_;
    std::array<std::size_t, dimensions> tilesAlong_;
    std::vector<std::uint32_t> tiles_;  // which tile of moved_ there is
    std::vector<float> moved_;          // in spacings; not-a-number where a tile has no point of the band
    std::vector<bool> isInside_;
};

}  // namespace lset::detail
