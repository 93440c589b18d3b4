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

    explicit SidesByRow(const typename Storage::Hash& points) {
        copyInOrder(points, entries_);
        std::sort(entries_.begin(), entries_.end(), before);
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

/// A set operation on two bands, not yet reinitialised: at all points that one of them stores.
template <class Band>
Band combinedBands(const Band& a, const Band& b, SetOperation operation) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    using Sides = SidesByRow<dimensions>;
    checkSameSpacings(BandTraits<Band>::spacings(a), BandTraits<Band>::spacings(b));
    const Sides inA(a.points()), inB(b.points());
    std::vector<typename Sides::Entry> entries;
    std::set_union(inA.entries().begin(), inA.entries().end(), inB.entries().begin(), inB.entries().end(),
                   std::back_inserter(entries), Sides::before);
    for (auto& entry : entries) {
        const auto p = Sides::Storage::pointOf(entry);
        entry.value = combinedValue(operation, inA.value(p), inB.value(p));
    }
    Band result(a);
    setPoints<dimensions>(BandAccess::values(result), eachOf<dimensions>(entries));
    return result;
}

/// Reinitialises a band, which becomes empty if it has no interface; whether it has.
template <class Band>
bool reinitializedOrEmptied(Band& band, double width, OldValues old = OldValues::kTrusted) {
    quorbin::ReinitializeOptions options;
    options.width = width;
    try {
        return reinitializeBand(band, options, old);
    } catch (const quorbin::NoInterface&) {
        BandAccess::values(band).clear();
        return false;
    }
}

template <class Band>
Band reinitializedCombination(const Band& a, const Band& b, SetOperation operation, double width) {
    Band result = combinedBands(a, b, operation);
    reinitializedOrEmptied(result, width);
    return result;
}

/// change(value) gives the new value of each point.
template <class Band, class Change>
void changeValues(Band& band, Change change) {
    for (auto& bucket : BandAccess::values(band).buckets)
        for (auto& entry : bucket) entry.value = change(entry.value);
}

template <class Band>
Band complementOfBand(const Band& band, double width) {
    Band result(band);
    changeValues(result, complementOf);
    reinitializedOrEmptied(result, width);
    return result;
}

}  // namespace lset::detail
