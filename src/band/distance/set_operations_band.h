#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <vector>

#include "band/differences/readers.h"
#include "band/distance/reinitialize_band.h"
#include "band/storage/band_access.h"
#include "band/storage/workspace.h"
#include "common/distance/set_operations.h"

namespace lset::detail {

/// The points of a band sorted row by row, and its side everywhere else.
template <std::size_t dims>
class SidesByRow {
 public:
    using Storage = BandStorage<dims>;
    using Entry = typename Storage::Entry;
    using Point = std::array<int, dims>;

    SidesByRow(const typename Storage::Hash& points, const Stretch& stretch) {
        copyInOrder(points, entries_, stretch.part(0, 0.3));
        sortWatched(entries_, before, stretch.part(0.3, 1));
    }

    const std::vector<Entry>& entries() const { return entries_; }

    /// The value of a point; of one that is not stored, minus or plus infinity as the nearest one of its row.
    double value(const Point& p) const {
        const auto after = std::lower_bound(entries_.begin(), entries_.end(), Storage::entryOf(p, 0), before);
        if (after != entries_.end() && Storage::pointOf(*after) == p) return after->value;
        const bool isLeft = after != entries_.begin() && isInRow(*(after - 1), p);
        const bool isRight = after != entries_.end() && isInRow(*after, p);
        constexpr double kInfinity = std::numeric_limits<double>::infinity();
        if (!isLeft && !isRight) return kInfinity;
        const bool takesLeft =
            isLeft && (!isRight || std::int64_t{p[0]} - (after - 1)->x <= std::int64_t{after->x} - p[0]);
        return (takesLeft ? after - 1 : after)->value <= 0 ? -kInfinity : kInfinity;
    }

    static bool before(const Entry& a, const Entry& b) {
        const Point p = Storage::pointOf(a), q = Storage::pointOf(b);
        for (std::size_t axis = dims - 1; axis > 0; --axis)
            if (p[axis] != q[axis]) return p[axis] < q[axis];
        return p[0] < q[0];
    }

 private:
    static bool isInRow(const Entry& entry, const Point& p) {
        const Point q = Storage::pointOf(entry);
        return std::equal(p.begin() + 1, p.end(), q.begin() + 1);
    }

    std::vector<Entry> entries_;
};

/// A copy; of a subclass, what the library knows of it.
template <class Band>
Band copyOfBand(const Band& band, Stretch stretch) {
    Band copy;
    using Base = typename BandTraits<Band>::Base;
    static_cast<Base&>(copy) = band;
    const auto& buckets = band.points().buckets;
    auto& points = BandAccess::values(copy);
    points = std::decay_t<decltype(points)>(band.points().bucketCount);
    stretch.expect(static_cast<std::size_t>(buckets.count));
    for (int i = 0; i < buckets.count; ++i) {
        points.buckets[i] = buckets[i];
        stretch.step();
    }
    return copy;
}

/// A set operation on two bands, not yet reinitialised: at all points that one of them stores.
template <class Band>
Band combinedBands(const Band& a, const Band& b, SetOperation operation, const Stretch& stretch) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    using Sides = SidesByRow<dimensions>;
    checkSameSpacings(BandTraits<Band>::spacings(a), BandTraits<Band>::spacings(b));
    const Sides inA(a.points(), stretch.part(0, 0.25)), inB(b.points(), stretch.part(0.25, 0.5));
    std::vector<typename Sides::Entry> entries;
    std::set_union(inA.entries().begin(), inA.entries().end(), inB.entries().begin(), inB.entries().end(),
                   std::back_inserter(entries), Sides::before);
    Stretch rest = stretch.part(0.5, 0.7);
    rest.expect(2 * entries.size());
    for (auto& entry : entries) {
        const auto p = Sides::Storage::pointOf(entry);
        entry.value = combinedValue(operation, inA.value(p), inB.value(p));
        rest.step(2);
    }
    Band result = copyOfBand(a, stretch.part(0.7, 0.8));
    setPoints<dimensions>(BandAccess::values(result), eachOf<dimensions>(entries, stretch.part(0.8, 1)));
    return result;
}

/// Reinitialises a band, which becomes empty if it has no interface; whether it has.
template <class Band>
bool reinitializedOrEmptied(Band& band, double width, const Stretch& stretch,
                            OldValues old = OldValues::kTrusted) {
    try {
        reinitializeBand(band, width, stretch, old);
        return true;
    } catch (const quorbin::NoInterface&) {
        BandAccess::values(band).clear();
        return false;
    }
}

template <class Band>
Band reinitializedCombination(const Band& a, const Band& b, SetOperation operation, double width,
                              const Stretch& stretch) {
    Band result = combinedBands(a, b, operation, stretch.part(0, 0.5));
    reinitializedOrEmptied(result, width, stretch.part(0.5, 1));
    return result;
}

/// change(value) gives the new value of each point.
template <class Band, class Change>
void changeValues(Band& band, const Stretch& stretch, Change change) {
    auto& buckets = BandAccess::values(band).buckets;
    inBlocks(static_cast<std::size_t>(buckets.count), stretch, [&](std::size_t first, std::size_t last) {
        for (std::size_t i = first; i < last; ++i)
            for (auto& entry : buckets[static_cast<int>(i)]) entry.value = change(entry.value);
    });
}

template <class Band>
Band complementOfBand(const Band& band, double width, const Stretch& stretch) {
    Band result = copyOfBand(band, stretch.part(0, 0.1));
    changeValues(result, stretch.part(0.1, 0.15), complementOf);
    reinitializedOrEmptied(result, width, stretch.part(0.15, 1));
    return result;
}

}  // namespace lset::detail
