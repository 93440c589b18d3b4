#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "band/differences/readers.h"
#include "common/states.h"

namespace lset::detail {

/// Bands move by less than the stability limit.
constexpr double kPartOfLimit = 0.95;

/// Moves the interior points of a band by their curvature; all others leave it.
template <class Band>
void moveBandAlongCurvature(Band& band, BandWorkspace<BandTraits<Band>::dimensions>& workOfBand, double limit,
                            typename BandStorage<BandTraits<Band>::dimensions>::Hash& points) {
    constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    const double dt = limit * kPartOfLimit;
    withBandReader(band, workOfBand, [&](const auto& reader, BandWorkspace<dimensions>& work) {
        auto& moved = work.result;
        moved.clear();
        reader.forEach([&](const auto& entry, const auto& place) {
            if (!isInterior(reader, place)) return;
            moved.push_back(entry);
            moved.back().value = dt * reader.curvature(place) + entry.value;
        });
        replacePoints<dimensions>(points, moved, reader.entries());
    });
}

/// Moves the interior points of a band at the rate that f(levelSet, coordinates ..., limit) returns, over a
/// part (kPartOfLimit) of the smallest limit that it writes. Returns that time, 0 if no point is interior.
template <class Band, class Speed>
double moveBandWithCurvature(Band& band, const Speed& f,
                             typename BandStorage<BandTraits<Band>::dimensions>::Hash& points) {
    using Place = typename VirtualBandReader<Band>::Place;
    struct Move {
        Place at;
        double* value;  // null for the stored one, which may lie elsewhere by the time
        double rate;
    };
    std::vector<Move> moves;
    double smallestLimit = kNoDistance;
    // Whatever the type, neighbours are asked for one by one: the callback may add points.
    const VirtualBandReader<Band> reader(band);
    moves.reserve(reader.entries().size());
    const auto storedValue = [&](const Place& p) {
        return std::apply([&](auto... c) { return points.find(c...); }, p);
    };
    reader.forEach([&](const auto&, const Place& place) {
        const bool isLeft = storedValue(place) != nullptr;  // where a callback has not taken it away
        if (!isLeft || !isInterior(reader, place)) return;
        double limit = 0.0;
        const double rate = std::apply([&](auto... c) { return f(&band, c..., &limit); }, place);
        if (limit < smallestLimit) smallestLimit = limit;
        double* const value = std::apply([&](auto... c) { return &band(c...); }, place);
        moves.push_back({place, value == storedValue(place) ? nullptr : value, rate});
    });
    const double dt = smallestLimit * kPartOfLimit;
    for (const Move& move : moves) {
        double* const value = move.value != nullptr ? move.value : storedValue(move.at);
        if (value != nullptr) *value = dt * move.rate + *value;  // null if the callback has taken it away
    }
    return moves.empty() ? 0.0 : dt;
}

/// The values of a band while an implicit step relaxes them.
template <std::size_t dimensions>
struct BandIterate {
    struct Interior {
        std::array<int, dimensions> at;
        std::size_t here;
        std::array<std::size_t, 2 * dimensions> beside;  // after and before it along each axis
        double old;
    };

    std::vector<typename BandStorage<dimensions>::Entry> points;  // all that are stored
    std::vector<Interior> interior;                               // those of them that a step moves

    double& value(std::size_t i) { return points[i].value; }
};

/// Makes the points of an iterate those of the band.
template <std::size_t dimensions>
void takePoints(const BandIterate<dimensions>& iterate, typename BandStorage<dimensions>::Hash& points) {
    std::vector<typename BandStorage<dimensions>::Entry> before;
    copyInOrder(points, before);
    replacePoints<dimensions>(points, iterate.points, before);
}

/// What becomes of a neighbour of an interior point that is not among the points that were stored at first,
/// since only a subclass says that it is there, or a callback has added it.
enum class AbsentNeighbour { kEntersWithZero, kMakesPointNotInterior };

template <AbsentNeighbour absent, class Reader>
class BandIterateMaker {
 public:
    static constexpr std::size_t dimensions = Reader::dimensions;
    using Iterate = BandIterate<dimensions>;

    explicit BandIterateMaker(Reader& band) : band_(band) {}

    /// Calls onInterior(point) for each interior point, once it is known.
    template <class OnInterior>
    Iterate make(OnInterior onInterior) {
        iterate_.points.reserve(band_.entries().size());
        band_.forEach([&](const auto& entry, const auto& place) { add(place, entry.value); });
        band_.forEach([&](const auto& entry, const auto& place) {
            if (!isInterior(band_, place)) return;
            typename Iterate::Interior point;
            point.at = BandStorage<dimensions>::pointOf(entry);
            if (!findBeside<0>(place, point.beside)) return;
            point.old = band_.getNow(place);
            point.here = indexOf(place);
            iterate_.interior.push_back(point);
            onInterior(point);
        });
        return std::move(iterate_);
    }

 private:
    using Place = typename Reader::Place;

    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::size_t& indexOf(const Place& place) {
        const int number = band_.number(place);
        if (index_.size() < band_.tiles().size()) index_.resize(band_.tiles().size(), kNone);
        return index_[static_cast<std::size_t>(number)];
    }

    std::size_t add(const Place& place, double value) {
        const auto point = band_.tiles().point(band_.number(place));
        iterate_.points.push_back(BandStorage<dimensions>::entryOf(point, value));
        return indexOf(place) = iterate_.points.size() - 1;
    }

    bool findNeighbour(const Place& place, std::size_t& found) {
        found = indexOf(place);
        if (found == kNone && absent == AbsentNeighbour::kEntersWithZero) found = add(place, 0);
        return found != kNone;
    }

    template <std::size_t axis>
    bool findBeside(const Place& place, std::array<std::size_t, 2 * dimensions>& beside) {
        if (!findNeighbour(band_.template step<axis, 1>(place), beside[2 * axis]) ||
            !findNeighbour(band_.template step<axis, -1>(place), beside[2 * axis + 1]))
            return false;
        if constexpr (axis + 1 < dimensions) return findBeside<axis + 1>(place, beside);
        return true;
    }

    Reader& band_;
    Iterate iterate_;
    std::vector<std::size_t> index_;  // among the points, by number
};

template <AbsentNeighbour absent, class Band, class OnInterior>
BandIterate<BandTraits<Band>::dimensions> makeBandIterate(Band& band,
                                                          BandWorkspace<BandTraits<Band>::dimensions>& work,
                                                          OnInterior onInterior) {
    // The callback may come back to the band, whose workspace is then needed elsewhere.
    BandWorkspace<BandTraits<Band>::dimensions> taken;
    std::swap(taken, work);
    auto iterate = withBandReader(band, taken, [&](auto& reader, auto&) {
        return BandIterateMaker<absent, std::decay_t<decltype(reader)>>(reader).make(onInterior);
    });
    std::swap(taken, work);
    return iterate;
}

}  // namespace lset::detail
