#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/flows/flow_lattice.h"

namespace lset::detail {

/// The points of a grid within some steps of a carried front, and what is known of the others: that no
/// interface lies between neighbours of which one is no point of the band.
template <class Lattice>
class FlowBand {
 public:
    static constexpr std::size_t dimensions = Lattice::dimensions;
    using Point = typename Lattice::Point;
    using Site = typename Lattice::Site;
    static constexpr int kReach = 3;

    FlowBand(const Lattice& lattice, const std::vector<Point>& front)
        : lattice_(lattice), states_(lattice.count()) {
        for (const Point& point : front)
            if (lattice.contains(point)) mark(lattice.nearestTo(point));
        std::sort(points_.begin(), points_.end());
    }

    /// Indices of its points, rising.
    const std::vector<std::size_t>& points() const { return points_; }

    /// Whether the side of a point of the band may be asked for: where a block of cubics around it is not
    /// whole.
    std::vector<std::size_t> rim() const {
        std::vector<std::uint8_t> isWithin(states_.size());
        for (const std::size_t i : points_) isWithin[i] = 1;
        for (std::size_t axis = 0; axis < dimensions; ++axis) erode(isWithin, axis);
        std::vector<std::size_t> rim;
        for (const std::size_t i : points_)
            if (isWithin[i] == 0) rim.push_back(i);
        return rim;
    }
    void setSide(std::size_t index, bool isInside) { states_[index] = isInside ? kInside : kOutside; }

    /// Sides spread to all points that are none of the band; calls set(index, isInside) for all that have
    /// one.
    template <class Set>
    void spread(const Set& set) {
        // A line with a point of the band in it is whole after the sweeps along it, and the lines beside it
        // after those along the next axis.
        for (std::size_t axis = 0; axis < dimensions; ++axis) sweep(axis);
        for (std::size_t i = 0; i < states_.size(); ++i)
            if (states_[i] == kInside || states_[i] == kOutside) set(i, states_[i] == kInside);
    }

 private:
    enum State : std::uint8_t { kUnknown, kBand, kInside, kOutside };

    void mark(const Site& centre) {
        Site low, high;
        for (std::size_t axis = 0; axis < dimensions; ++axis) {
            low[axis] = std::max(0, centre[axis] - kReach);
            high[axis] = std::min(lattice_.sizes[axis] - 1, centre[axis] + kReach);
        }
        Site site = low;
        for (;;) {
            site[0] = low[0];
            const std::size_t row = lattice_.indexOf(site);
            for (int x = 0; x <= high[0] - low[0]; ++x) {
                std::uint8_t& state = states_[row + static_cast<std::size_t>(x)];
                if (state == kBand) continue;
                state = kBand;
                points_.push_back(row + static_cast<std::size_t>(x));
            }
            std::size_t axis = 1;
            while (axis < dimensions && site[axis] == high[axis]) site[axis] = low[axis], ++axis;
            if (axis == dimensions) return;
            ++site[axis];
        }
    }

    /// visit(first index, stride, count) of each line along an axis.
    template <class Visit>
    void forEachLine(std::size_t axis, const Visit& visit) const {
        std::size_t stride = 1;
        for (std::size_t a = 0; a < axis; ++a) stride *= static_cast<std::size_t>(lattice_.sizes[a]);
        const auto count = static_cast<std::size_t>(lattice_.sizes[axis]);
        for (std::size_t start = 0; start < states_.size(); start += stride * count)
            for (std::size_t i = start; i < start + stride; ++i) visit(i, stride, count);
    }

    void sweep(std::size_t axis) {
        const auto pass = [](std::uint8_t& to, std::uint8_t from) {
            if (to == kUnknown && from >= kInside) to = from;
        };
        forEachLine(axis, [&](std::size_t first, std::size_t stride, std::size_t count) {
            std::uint8_t* const line = &states_[first];
            for (std::size_t k = 1; k < count; ++k) pass(line[k * stride], line[(k - 1) * stride]);
            for (std::size_t k = count - 1; k-- > 0;) pass(line[k * stride], line[(k + 1) * stride]);
        });
    }

    /// What lies within two of what is not, along an axis, is within no longer.
    void erode(std::vector<std::uint8_t>& isWithin, std::size_t axis) const {
        constexpr std::size_t kBeside = 2;
        std::vector<std::uint8_t> old;
        forEachLine(axis, [&](std::size_t first, std::size_t stride, std::size_t count) {
            old.resize(count);
            std::uint8_t* const line = &isWithin[first];
            for (std::size_t k = 0; k < count; ++k) old[k] = line[k * stride];
            for (std::size_t k = 0; k < count; ++k)
                for (std::size_t j = k > kBeside ? k - kBeside : 0; j < std::min(count, k + kBeside + 1); ++j)
                    line[k * stride] &= old[j];
        });
    }

    const Lattice& lattice_;
    std::vector<std::uint8_t> states_;
    std::vector<std::size_t> points_;
};

}  // namespace lset::detail
