#include <array>

#include "band/distance/march.h"
#include "common/stepped.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/distance/estimate.h"
#include "quorbin2d/distance/first_distance.h"

using namespace lset::detail;

namespace {

double firstDistanceOf(const VirtualBandReader2D& reader, const VirtualBandReader2D::Place& p) {
    return reader.band().estimateDistanceInit(p[0], p[1]);
}

double firstDistanceOf(const TiledBandReader2D& band, TiledBandReader2D::Place p) {
    const double here = band.get(p);
    const auto valueOf = [&](int q) { return band.have(q) ? band.get(q) : here; };
    return firstDistance({here, valueOf(band.step<1, 1>(p)), valueOf(band.step<0, -1>(p)),
                          valueOf(band.step<1, -1>(p)), valueOf(band.step<0, 1>(p))},
                         band.spacings()[0], band.spacings()[1]);
}

}  // namespace

double FastLevelSet2D::estimateDistance(const PointHash<double>& distances, const PointHash<char>& states,
                                        int sign, int x, int y) const {
    static constexpr double kNone = 0.0;  // of a known neighbour without a distance
    const auto known = [&](int nx, int ny) -> const double* {
        // States are signed numbers whatever the sign of char.
        const char* state = states.find(nx, ny);
        if (state == nullptr || static_cast<signed char>(*state) != sign) return nullptr;
        const double* distance = distances.find(nx, ny);
        return distance != nullptr ? distance : &kNone;
    };
    const double hx = getXSpace(), hy = getYSpace();
    const KnownNeighbours2D neighbours{known(stepped(x, 1), y), known(stepped(x, -1), y),
                                       known(x, stepped(y, 1)), known(x, stepped(y, -1))};
    return estimateFrom(neighbours, hx, hy, EikonalQuadratic(hx, hy)).distance;
}

void FastLevelSet2D::ensureSignedDistanceFMM() {
    const std::array<double, 2> h = BandTraits<FastLevelSet2D>::spacings(*this);
    withBandReader(*this, work(), [&](auto& band, BandWorkspace<2>& work) {
        const auto first = [](const auto& reader, const auto& place) {
            return firstDistanceOf(reader, place);
        };
        marchBand<Estimator2D>(band, work, h, first, values_);
    });
}
