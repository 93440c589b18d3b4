#include <array>

#include "band/distance/march.h"
#include "common/stepped.h"
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

}  // namespace

double FastLevelSet3D::estimateDistance(const Point3Hash<double>& distances, const Point3Hash<char>& states,
                                        int sign, int x, int y, int z) const {
    static constexpr double kNone = 0.0;  // of a known neighbour without a distance
    const auto known = [&](int nx, int ny, int nz) -> const double* {
        // States are signed numbers whatever the sign of char.
        const char* state = states.find(nx, ny, nz);
        if (state == nullptr || static_cast<signed char>(*state) != sign) return nullptr;
        const double* distance = distances.find(nx, ny, nz);
        return distance != nullptr ? distance : &kNone;
    };
    KnownNeighbours3D neighbours;
    neighbours[kXMinus] = known(stepped(x, -1), y, z);
    neighbours[kXPlus] = known(stepped(x, 1), y, z);
    neighbours[kYMinus] = known(x, stepped(y, -1), z);
    neighbours[kYPlus] = known(x, stepped(y, 1), z);
    neighbours[kZMinus] = known(x, y, stepped(z, -1));
    neighbours[kZPlus] = known(x, y, stepped(z, 1));
    const std::array<double, 3> h = BandTraits<FastLevelSet3D>::spacings(*this);
    return estimateFrom(neighbours, EikonalQuadratics3D(h[0], h[1], h[2])).distance;
}

void FastLevelSet3D::ensureSignedDistanceFMM() {
    const std::array<double, 3> h = BandTraits<FastLevelSet3D>::spacings(*this);
    withBandReader(*this, work(), [&](auto& band, BandWorkspace<3>& work) {
        const auto first = [](const auto& reader, const auto& place) {
            return firstDistanceOf(reader, place);
        };
        marchBand<Estimator3D>(band, work, h, first, values_);
    });
}
