#include <cmath>
#include <cstddef>

#include "band/differences/stencils.h"
#include "quorbin3d/differences/band_readers.h"

using namespace lset::detail;

namespace {

double gradientLength(const VirtualBandReader3D& reader, const VirtualBandReader3D::Place& p) {
    const FastLevelSet3D& band = reader.band();
    const double a = band.getDxCentral(p[0], p[1], p[2]);
    const double b = band.getDyCentral(p[0], p[1], p[2]);
    const double c = band.getDzCentral(p[0], p[1], p[2]);
    return std::sqrt(a * a + b * b + c * c);
}

double gradientLength(const TiledBandReader3D& band, TiledBandReader3D::Place p) {
    const auto [a, b, c] = bandGradient(band, p);
    return std::sqrt(a * a + b * b + c * c);
}

}  // namespace

double FastLevelSet3D::getDxCentral(int x, int y, int z) const {
    return central<0>(*this, BandPoint<3>{x, y, z}, getXSpace());
}
double FastLevelSet3D::getDxMinus(int x, int y, int z) const {
    return backward<0>(*this, BandPoint<3>{x, y, z}, getXSpace());
}
double FastLevelSet3D::getDxPlus(int x, int y, int z) const {
    return forward<0>(*this, BandPoint<3>{x, y, z}, getXSpace());
}
double FastLevelSet3D::getDxUpwind(int x, int y, int z, double speed) const {
    return speed > 0.0 ? getDxMinus(x, y, z) : getDxPlus(x, y, z);
}

double FastLevelSet3D::getDyCentral(int x, int y, int z) const {
    return central<1>(*this, BandPoint<3>{x, y, z}, getYSpace());
}
double FastLevelSet3D::getDyMinus(int x, int y, int z) const {
    return backward<1>(*this, BandPoint<3>{x, y, z}, getYSpace());
}
double FastLevelSet3D::getDyPlus(int x, int y, int z) const {
    return forward<1>(*this, BandPoint<3>{x, y, z}, getYSpace());
}
double FastLevelSet3D::getDyUpwind(int x, int y, int z, double speed) const {
    return speed > 0.0 ? getDyMinus(x, y, z) : getDyPlus(x, y, z);
}

double FastLevelSet3D::getDzCentral(int x, int y, int z) const {
    return central<2>(*this, BandPoint<3>{x, y, z}, getZSpace());
}
double FastLevelSet3D::getDzMinus(int x, int y, int z) const {
    return backward<2>(*this, BandPoint<3>{x, y, z}, getZSpace());
}
double FastLevelSet3D::getDzPlus(int x, int y, int z) const {
    return forward<2>(*this, BandPoint<3>{x, y, z}, getZSpace());
}
double FastLevelSet3D::getDzUpwind(int x, int y, int z, double speed) const {
    return speed > 0.0 ? getDzMinus(x, y, z) : getDzPlus(x, y, z);
}

double FastLevelSet3D::getCurvature(int x, int y, int z) const {
    return laplacian(readCross(*this, BandPoint<3>{x, y, z}), BandTraits<FastLevelSet3D>::spacings(*this));
}

double FastLevelSet3D::getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx,
                                             double& dy, double& dz) const {
    const BandCross<3> cross = readCross(*this, BandPoint<3>{x, y, z});
    const std::array<double, 3> h = BandTraits<FastLevelSet3D>::spacings(*this);
    dx = cross.upwind(0, vx, h[0]);
    dy = cross.upwind(1, vy, h[1]);
    dz = cross.upwind(2, vz, h[2]);
    return laplacianFromBefore(cross, h);
}

double FastLevelSet3D::averageNormalLength() const {
    double sum = 0;
    std::size_t count = 0;
    auto& self = const_cast<FastLevelSet3D&>(*this);  // nothing is written
    withBandReader(self, work(), [&](const auto& band, BandWorkspace<3>&) {
        band.forEach([&](const auto&, const auto& place) {
            if (!isInterior(band, place)) return;
            sum = sum + gradientLength(band, place);
            ++count;
        });
    });
    return sum / static_cast<double>(count);
}
