#include <array>

#include "common/band/march.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/distance/estimate.h"
#include "quorbin2d/distance/first_distance.h"

using namespace lset::detail;

namespace {

double firstDistanceOf(const VirtualBandReader2D& reader, VirtualBandReader2D::Place p) {
    return reader.band().estimateDistanceInit(p[0], p[1]);
}

double firstDistanceOf(const TiledBandReader2D& band, TiledBandReader2D::Place p) {
    const double here = band.get(p);
    const auto valueOf = [&](int q) { return band.have(q) ? band.get(q) : here; };
    return firstDistance({here, valueOf(band.step<1, 1>(p)), valueOf(band.step<0, -1>(p)),
                          valueOf(band.step<1, -1>(p)), valueOf(band.step<0, 1>(p))},
                         band.spacings()[0], band.spacings()[1]);
}

/// Neighbours of a point under a march.
template <class March>
struct MarchedNeighbours {
    const March& march;
    int point;
    State side;

    template <int dx, int dy>
    bool isKnown() const {
        return march.template knownNeighbour<dx == 0, dx + dy>(point, side) != March::kNone;
    }
    template <int dx, int dy>
    double distance() const {
        return march.distance(march.template knownNeighbour<dx == 0, dx + dy>(point, side));
    }
};

struct Estimator {
    double hx, hy;
    EikonalQuadratic2D quadratic;

    explicit Estimator(const std::array<double, 2>& h) : hx(h[0]), hy(h[1]), quadratic(hx, hy) {}

    template <class March>
    double reach(const March& march, int point, State side) const {
        return estimateFrom(MarchedNeighbours<March>{march, point, side}, hx, hy, quadratic).distance;
    }
    template <int, int, class March>
    double reachFrom(const March& march, int point, State side) const {
        return reach(march, point, side);
    }
    template <int, int, class March>
    double improve(const March& march, int point, State side, double) const {
        return reach(march, point, side);
    }
};

/// Neighbours by look-ups in hashes of states and distances.
struct HashedNeighbours {
    const PointHash<double>& distances;
    const PointHash<char>& states;
    int sign, x, y;

    template <int dx, int dy>
    bool isKnown() const {
        const char* state = states.find(stepped(x, dx), stepped(y, dy));
        return state != nullptr && static_cast<signed char>(*state) == sign;
    }
    template <int dx, int dy>
    double distance() const {
        const double* found = distances.find(stepped(x, dx), stepped(y, dy));
        return found != nullptr ? *found : 0.0;
    }
};

}  // namespace

double FastLevelSet2D::estimateDistanceInit(int x, int y) {
    const int left = stepped(x, -1), right = stepped(x, 1), down = stepped(y, -1), up = stepped(y, 1);
    Cross2D value{};
    value.here = get(x, y);
    value.up = have(x, up) ? get(x, up) : value.here;
    value.left = have(left, y) ? get(left, y) : value.here;
    value.down = have(x, down) ? get(x, down) : value.here;
    value.right = have(right, y) ? get(right, y) : value.here;
    return firstDistance(value, getXSpace(), getYSpace());
}

double FastLevelSet2D::estimateDistance(const PointHash<double>& distances, const PointHash<char>& states,
                                        int sign, int x, int y) const {
    const double hx = getXSpace(), hy = getYSpace();
    return estimateFrom(HashedNeighbours{distances, states, sign, x, y}, hx, hy, EikonalQuadratic2D(hx, hy))
        .distance;
}

void FastLevelSet2D::ensureSignedDistanceFMM() {
    const std::array<double, 2> h = {getXSpace(), getYSpace()};
    withBandReader(*this, *work_, [&](auto& band, BandWorkspace2D& work) {
        const auto first = [](const auto& reader, auto place) { return firstDistanceOf(reader, place); };
        marchBand<Estimator>(band, work, h, first, values_);
    });
}
