#include <cstddef>
#include <vector>

#include "common/march.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/distance/band_march.h"
#include "quorbin2d/distance/first_distance.h"

using namespace lset::detail;

namespace {

double firstDistanceOf(const VirtualBandReader2D& reader, VirtualBandReader2D::Place p) {
    return reader.band().estimateDistanceInit(p.x, p.y);
}

double firstDistanceOf(const TiledBandReader2D& band, TiledBandReader2D::Place p) {
    const double here = band.get(p);
    const auto valueOf = [&](int q) { return band.have(q) ? band.get(q) : here; };
    return firstDistance({here, valueOf(band.step<1, 1>(p)), valueOf(band.step<0, -1>(p)),
                          valueOf(band.step<1, -1>(p)), valueOf(band.step<0, 1>(p))},
                         band.hx(), band.hy());
}

struct Front {
    std::vector<int> outside, inside;
};

/// The points next to a sign change, with their first distances.
template <class Reader>
Front findFront(Reader& band, BandMarch2D& march) {
    Front front;
    const auto add = [&](auto place, bool inside) {
        const int number = band.number(place);
        if (march.isKnown(number)) return;
        march.accept(number, inside ? kInside : kOutside, firstDistanceOf(band, place));
        (inside ? front.inside : front.outside).push_back(number);
    };
    band.forEach([&](const PointAnd<double>&, auto here) {
        const auto right = band.template step<0, 1>(here), up = band.template step<1, 1>(here);
        const double value = band.getToWrite(here);
        const double rightValue = band.have(right) ? band.getToWrite(right) : value;
        const double upValue = band.have(up) ? band.getToWrite(up) : value;
        const bool inside = value <= 0, rightInside = rightValue <= 0, upInside = upValue <= 0;
        if (rightInside != inside) {
            add(here, inside);
            add(right, rightInside);
        }
        if (upInside != inside) {
            add(here, inside);
            add(up, upInside);
        }
    });
    return front;
}

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
    withBandReader(*this, *work_, [&](auto& band, BandWorkspace2D& work) {
        BandMarch2D marched(band.tiles(), work, getXSpace(), getYSpace());
        const Front front = findFront(band, marched);
        march(marched, front.outside, kOutside, work.queue);
        march(marched, front.inside, kInside, work.queue);
        work.result.clear();
        for (const int number : marched.known()) {
            const auto [x, y] = band.tiles().point(number);
            work.result.push_back({x, y, marched.signedDistance(number)});
        }
        replacePoints(values_, work.result);
    });
}
