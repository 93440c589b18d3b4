#pragma once

#include <cstddef>
#include <typeinfo>
#include <vector>

#include "common/steps.h"
#include "quorbin2d/differences/stencils.h"
#include "quorbin2d/fast_level_set_2d.h"
#include "quorbin2d/storage/band_workspace.h"

/// How algorithms read a band. A reader holds the stored points in their order and names each by a Place, from which the
/// neighbours are a step away:
///
///     forEach(visit)                    visit(point, place) for each stored point
///     step<axis, by>(place)             the place one step (1 or -1) along an axis
///     have(place), get(place), curvature(place)
///     getToWrite(place)                 the same value, by the reference through which it is written
///     number(place), tiles()            for what an algorithm keeps by points of its own
namespace lset::detail {

/// Reads any band; each name is its slot, so whatever a subclass overrides is honoured.
class VirtualBandReader2D {
 public:
    struct Place {
        int x, y;
    };

    explicit VirtualBandReader2D(FastLevelSet2D& band) : band_(band) { copyInOrder(band.points(), inOrder_); }

    template <class Visit>
    void forEach(Visit visit) const {
        for (const PointAnd<double>& point : inOrder_) visit(point, Place{point.x, point.y});
    }
    std::size_t size() const { return inOrder_.size(); }

    template <int axis, int by>
    Place step(Place p) const {
        return axis == 0 ? Place{stepped(p.x, by), p.y} : Place{p.x, stepped(p.y, by)};
    }
    bool have(Place p) const { return band_.have(p.x, p.y); }
    double get(Place p) const { return band_.get(p.x, p.y); }
    double getToWrite(Place p) const { return band_(p.x, p.y); }
    double curvature(Place p) const { return band_.getCurvature(p.x, p.y); }

    TiledPoints<2>& tiles() { return tiles_; }
    int number(Place p) { return tiles_.number({p.x, p.y}); }
    FastLevelSet2D& band() const { return band_; }

 private:
    FastLevelSet2D& band_;
    std::vector<PointAnd<double>> inOrder_;
    TiledPoints<2> tiles_;
};

/// Reads a copy of exactly the band, laid out by tiles: the hash is touched once a point, and neighbours are found without
/// searching.
class TiledBandReader2D {
 public:
    using Place = int;

    TiledBandReader2D(const FastLevelSet2D& band, BandWorkspace2D& work)
        : work_(work), hx_(band.getXSpace()), hy_(band.getYSpace()) {
        work.copy(band.points());
    }

    template <class Visit>
    void forEach(Visit visit) const {
        for (std::size_t i = 0; i < work_.numbers.size(); ++i) visit(work_.inOrder[i], work_.numbers[i]);
    }
    std::size_t size() const { return work_.inOrder.size(); }

    template <int axis, int by>
    Place step(Place p) const {
        return p == kNone ? kNone : work_.tiles.neighbour<axis, by>(p);
    }
    bool have(Place p) const { return p != kNone && work_.isStored(p); }
    double get(Place p) const { return p == kNone ? 0.0 : work_.values[static_cast<std::size_t>(p)]; }
    double getToWrite(Place p) const { return get(p); }
    double curvature(Place p) const {
        return fivePoint(get(p) * -2.0, get(step<0, 1>(p)), get(step<0, -1>(p)), get(step<1, 1>(p)),
                         get(step<1, -1>(p)), Divide{hx_ * hx_}, Divide{hy_ * hy_});
    }

    TiledPoints<2>& tiles() { return work_.tiles; }
    int number(Place p) const { return p; }
    double hx() const { return hx_; }
    double hy() const { return hy_; }

 private:
    static constexpr int kNone = TiledPoints<2>::kNone;

    BandWorkspace2D& work_;
    double hx_, hy_;
};

/// Whether all four neighbours of a point are stored; asks no further than the first that is not.
template <class Reader>
bool isInterior(const Reader& band, typename Reader::Place p) {
    return band.have(band.template step<0, 1>(p)) && band.have(band.template step<0, -1>(p)) &&
           band.have(band.template step<1, 1>(p)) && band.have(band.template step<1, -1>(p));
}

/// Calls body with the reader that the exact type of the band allows, and with what to work with: that of the band where
/// nothing but the library runs, its own where an override may come back to the same band. Meant once a call, outside the
/// loops.
template <class Body>
decltype(auto) withBandReader(FastLevelSet2D& band, BandWorkspace2D& work, Body&& body) {
    if (&typeid(band) == &typeid(FastLevelSet2D)) {
        TiledBandReader2D reader(band, work);
        return body(reader, work);
    }
    BandWorkspace2D own;
    VirtualBandReader2D reader(band);
    return body(reader, own);
}

}  // namespace lset::detail
