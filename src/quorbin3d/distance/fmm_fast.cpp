#include <array>

#include "common/band/march.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/distance/estimate.h"
#include "quorbin3d/distance/first_distance.h"

using namespace lset::detail;

namespace {

double firstDistanceOf(const VirtualBandReader3D& reader, const VirtualBandReader3D::Place& p) {
    return reader.band().estimateDistanceInit(p[0], p[1], p[2]);
}

double firstDistanceOf(const TiledBandReader3D& band, TiledBandReader3D::Place p) {
    const double here = band.get(p);
    const auto valueOf = [&](int q) { return band.have(q) ? band.get(q) : here; };
    double beside[6];
    beside[kXMinus] = valueOf(band.step<0, -1>(p));
    beside[kXPlus] = valueOf(band.step<0, 1>(p));
    beside[kYMinus] = valueOf(band.step<1, -1>(p));
    beside[kYPlus] = valueOf(band.step<1, 1>(p));
    beside[kZMinus] = valueOf(band.step<2, -1>(p));
    beside[kZPlus] = valueOf(band.step<2, 1>(p));
    return firstDistance(here, beside, {band.spacings()[0], band.spacings()[1], band.spacings()[2]});
}

class Estimator {
 public:
    explicit Estimator(const std::array<double, 3>& h) : quadratics_(h[0], h[1], h[2]) {}

    template <class March>
    double reach(March& march, int point, State side) const {
        bool known[6];
        double distance[6];
        const auto look = [&](Direction d, int neighbour) {
            known[d] = neighbour != March::kNone;
            distance[d] = known[d] ? march.distance(neighbour) : 0.0;
        };
        look(kXMinus, march.template knownNeighbour<0, -1>(point, side));
        look(kXPlus, march.template knownNeighbour<0, 1>(point, side));
        look(kYMinus, march.template knownNeighbour<1, -1>(point, side));
        look(kYPlus, march.template knownNeighbour<1, 1>(point, side));
        look(kZMinus, march.template knownNeighbour<2, -1>(point, side));
        look(kZPlus, march.template knownNeighbour<2, 1>(point, side));
        const Estimate3D estimate = estimateFrom(known, distance, quadratics_);
        march.keep(point, static_cast<int>(estimate.source));
        return estimate.distance;
    }

    template <int axis, int step, class March>
    double reachFrom(March& march, int point, State side) const {
        if (!march.haveAllSpread()) return reach(march, point, side);
        march.keep(point, static_cast<int>(Source::kSingle));
        RunningMin nearest;
        nearest.offer(
            quadratics_.single(axis, march.distance(march.template knownNeighbour<axis, step>(point, side))));
        return nearest.best;
    }

    template <int axis, int step, class March>
    double improve(March& march, int point, State side, double last) const {
        if (!march.haveAllSpread() || !(last < kUsable)) return reach(march, point, side);
        Source source = static_cast<Source>(march.kept(point));
        const double here = march.distance(march.template knownNeighbour<axis, step>(point, side));
        const double next =
            improved<axis>(last, source, here, look < axis == 0 ? 1 : 0 > (march, point, side),
                           look < axis == 2 ? 1 : 2 > (march, point, side), quadratics_);
        march.keep(point, static_cast<int>(source));
        return next;
    }

 private:
    template <int axis, class March>
    static KnownAlongAxis look(const March& march, int point, State side) {
        KnownAlongAxis known;
        const auto add = [&](int neighbour) {
            if (neighbour != March::kNone) known.add(march.distance(neighbour));
        };
        add(march.template knownNeighbour<axis, -1>(point, side));
        add(march.template knownNeighbour<axis, 1>(point, side));
        return known;
    }

    EikonalQuadratics3D quadratics_;
};

}  // namespace

double FastLevelSet3D::estimateDistance(const Point3Hash<double>& distances, const Point3Hash<char>& states,
                                        int sign, int x, int y, int z) const {
    bool known[6];
    double distance[6];
    const auto look = [&](Direction d, int nx, int ny, int nz) {
        // States are signed numbers whatever the sign of char.
        const char* state = states.find(nx, ny, nz);
        known[d] = state != nullptr && static_cast<signed char>(*state) == sign;
        const double* found = known[d] ? distances.find(nx, ny, nz) : nullptr;
        distance[d] = found != nullptr ? *found : 0.0;
    };
    look(kYPlus, x, stepped(y, 1), z);
    look(kYMinus, x, stepped(y, -1), z);
    look(kXPlus, stepped(x, 1), y, z);
    look(kXMinus, stepped(x, -1), y, z);
    look(kZPlus, x, y, stepped(z, 1));
    look(kZMinus, x, y, stepped(z, -1));
    return estimateFrom(known, distance, EikonalQuadratics3D(getXSpace(), getYSpace(), getZSpace())).distance;
}

void FastLevelSet3D::ensureSignedDistanceFMM() {
    const std::array<double, 3> h = BandTraits<FastLevelSet3D>::spacings(*this);
    withBandReader(*this, *work_, [&](auto& band, BandWorkspace<3>& work) {
        const auto first = [](const auto& reader, const auto& place) {
            return firstDistanceOf(reader, place);
        };
        marchBand<Estimator>(band, work, h, first, values_);
    });
}
