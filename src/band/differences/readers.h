#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <typeinfo>
#include <vector>

#include "band/differences/stencils.h"
#include "band/storage/workspace.h"
#include "common/stepped.h"

/// How algorithms read a band. A reader holds the stored points in their order and names each by a Place,
/// from which the neighbours are a step away:
///
///     entries()                         the stored points
///     forEach(visit)                    visit(entry, place) for each of them
///     step<axis, by>(place)             the place one step (1 or -1) along an axis
///     have(place), get(place), curvature(place)
///     getToWrite(place)                 the same value, by the reference through which it is written
///     getNow(place)                     the same value, if a callback may have changed it
///     number(place), tiles()            for what an algorithm keeps by points of its own
namespace lset::detail {

/// What the readers of a kind of band must know of it:
///
///     Base                              the class that keeps the spacings
///     dimensions
///     spacings(band)                    along each axis
template <class Band>
struct BandTraits;

/// Reads any band; each name is its slot, so whatever a subclass overrides is honoured.
template <class Band>
class VirtualBandReader {
 public:
    static constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    using Storage = BandStorage<dimensions>;
    using Place = std::array<int, dimensions>;

    explicit VirtualBandReader(Band& band) : band_(band) { copyInOrder(band.points(), inOrder_); }

    template <class Visit>
    void forEach(Visit visit) const {
        for (const auto& entry : inOrder_) visit(entry, Storage::pointOf(entry));
    }
    const std::vector<typename Storage::Entry>& entries() const { return inOrder_; }

    template <int axis, int by>
    Place step(Place p) const {
        p[axis] = stepped(p[axis], by);
        return p;
    }
    bool have(const Place& p) const {
        return std::apply([&](auto... c) { return band_.have(c...); }, p);
    }
    double get(const Place& p) const {
        return std::apply([&](auto... c) { return band_.get(c...); }, p);
    }
    double getToWrite(const Place& p) const {
        return std::apply([&](auto... c) -> double { return band_(c...); }, p);
    }
    double getNow(const Place& p) const { return get(p); }
    double curvature(const Place& p) const {
        return std::apply([&](auto... c) { return band_.getCurvature(c...); }, p);
    }

    TiledPoints<dimensions>& tiles() { return tiles_; }
    int number(const Place& p) { return tiles_.number(p); }
    Band& band() const { return band_; }

 private:
    Band& band_;
    std::vector<typename Storage::Entry> inOrder_;
    TiledPoints<dimensions> tiles_;
};

/// Reads a copy of exactly the band, laid out by tiles: the hash is touched once a point, and neighbours are
/// found without searching.
template <class Band>
class TiledBandReader {
 public:
    static constexpr std::size_t dimensions = BandTraits<Band>::dimensions;
    using Place = int;
    using Spacings = std::array<double, dimensions>;

    TiledBandReader(const Band& band, BandWorkspace<dimensions>& work, const Stretch& stretch)
        : work_(work), points_(band.points()), h_(BandTraits<Band>::spacings(band)) {
        work.copy(band.points(), stretch);
    }

    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t i = 0; i < work_.numbers.size(); ++i) visit(work_.inOrder[i], work_.numbers[i]);
    }
    const std::vector<typename BandStorage<dimensions>::Entry>& entries() const { return work_.inOrder; }

    template <int axis, int by>
    Place step(Place p) const {
        return p == kNone ? kNone : work_.tiles.template neighbour<axis, by>(p);
    }
    bool have(Place p) const { return p != kNone && work_.isStored(p); }
    double get(Place p) const { return p == kNone ? 0.0 : work_.values[static_cast<std::size_t>(p)]; }
    double getToWrite(Place p) const { return get(p); }
    double getNow(Place p) const {
        const double* value = std::apply([&](auto... c) { return points_.find(c...); }, work_.tiles.point(p));
        return value != nullptr ? *value : 0.0;
    }
    double curvature(Place p) const {
        BandCross<dimensions> cross;
        cross.here = get(p);
        readBeside<0>(p, cross.beside);
        return laplacian(cross, h_);
    }

    TiledPoints<dimensions>& tiles() { return work_.tiles; }
    int number(Place p) const { return p; }
    const Spacings& spacings() const { return h_; }

 private:
    static constexpr int kNone = TiledPoints<dimensions>::kNone;

    template <std::size_t axis>
    void readBeside(Place p, std::array<double, 2 * dimensions>& beside) const {
        beside[2 * axis] = get(step<axis, 1>(p));
        beside[2 * axis + 1] = get(step<axis, -1>(p));
        if constexpr (axis + 1 < dimensions) readBeside<axis + 1>(p, beside);
    }

    BandWorkspace<dimensions>& work_;
    const typename BandStorage<dimensions>::Hash& points_;
    Spacings h_;
};

/// Whether all neighbours of a point are stored; asks after and before it along each axis, no further than
/// the first that is not.
template <std::size_t axis = 0, class Reader>
bool isInterior(const Reader& band, const typename Reader::Place& p) {
    if (!band.have(band.template step<axis, 1>(p)) || !band.have(band.template step<axis, -1>(p)))
        return false;
    if constexpr (axis + 1 < Reader::dimensions) return isInterior<axis + 1>(band, p);
    return true;
}

/// Calls body with the reader that the exact type of the band allows, and with what to work with: that of the
/// band where nothing but the library runs, its own where an override may come back to the same band. Meant
/// once a call, outside the loops.
template <class Band, class Body>
decltype(auto) withBandReader(Band& band, BandWorkspace<BandTraits<Band>::dimensions>& work, Body&& body,
                              const Stretch& stretch = {}) {
    if (&typeid(band) == &typeid(Band)) {
        TiledBandReader<Band> reader(band, work, stretch);
        return body(reader, work);
    }
    BandWorkspace<BandTraits<Band>::dimensions> own;
    VirtualBandReader<Band> reader(band);
    return body(reader, own);
}

}  // namespace lset::detail
