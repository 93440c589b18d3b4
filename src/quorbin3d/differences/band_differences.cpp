#include <cmath>
#include <cstddef>

#include "common/stepped.h"
#include "quorbin3d/differences/band_readers.h"

using namespace lset::detail;

namespace {

// A band has no face at which a difference would become another. The first operand is read first.

template <int axis>
double valueBeside(const FastLevelSet3D& band, int x, int y, int z, int by) {
    return band.get(axis == 0 ? stepped(x, by) : x, axis == 1 ? stepped(y, by) : y,
                    axis == 2 ? stepped(z, by) : z);
}

template <int axis>
double backward(const FastLevelSet3D& band, int x, int y, int z, double h) {
    const double here = band.get(x, y, z);
    const double before = valueBeside<axis>(band, x, y, z, -1);
    return (here - before) / h;
}

template <int axis>
double forward(const FastLevelSet3D& band, int x, int y, int z, double h) {
    const double after = valueBeside<axis>(band, x, y, z, 1);
    const double here = band.get(x, y, z);
    return (after - here) / h;
}

template <int axis>
double central(const FastLevelSet3D& band, int x, int y, int z, double h) {
    const double after = valueBeside<axis>(band, x, y, z, 1);
    const double before = valueBeside<axis>(band, x, y, z, -1);
    return (after - before) / (h + h);
}

struct Cross3D {
    double here;
    std::array<double, 6> beside;  // after and before along each axis
};

Cross3D readCross(const FastLevelSet3D& band, int x, int y, int z) {
    Cross3D cross{};
    cross.here = band.get(x, y, z);
    cross.beside[0] = valueBeside<0>(band, x, y, z, 1);
    cross.beside[1] = valueBeside<0>(band, x, y, z, -1);
    cross.beside[2] = valueBeside<1>(band, x, y, z, 1);
    cross.beside[3] = valueBeside<1>(band, x, y, z, -1);
    cross.beside[4] = valueBeside<2>(band, x, y, z, 1);
    cross.beside[5] = valueBeside<2>(band, x, y, z, -1);
    return cross;
}

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
    return central<0>(*this, x, y, z, getXSpace());
}
double FastLevelSet3D::getDxMinus(int x, int y, int z) const {
    return backward<0>(*this, x, y, z, getXSpace());
}
double FastLevelSet3D::getDxPlus(int x, int y, int z) const {
    return forward<0>(*this, x, y, z, getXSpace());
}
double FastLevelSet3D::getDxUpwind(int x, int y, int z, double speed) const {
    return speed > 0.0 ? getDxMinus(x, y, z) : getDxPlus(x, y, z);
}

double FastLevelSet3D::getDyCentral(int x, int y, int z) const {
    return central<1>(*this, x, y, z, getYSpace());
}
double FastLevelSet3D::getDyMinus(int x, int y, int z) const {
    return backward<1>(*this, x, y, z, getYSpace());
}
double FastLevelSet3D::getDyPlus(int x, int y, int z) const {
    return forward<1>(*this, x, y, z, getYSpace());
}
double FastLevelSet3D::getDyUpwind(int x, int y, int z, double speed) const {
    return speed > 0.0 ? getDyMinus(x, y, z) : getDyPlus(x, y, z);
}

double FastLevelSet3D::getDzCentral(int x, int y, int z) const {
    return central<2>(*this, x, y, z, getZSpace());
}
double FastLevelSet3D::getDzMinus(int x, int y, int z) const {
    return backward<2>(*this, x, y, z, getZSpace());
}
double FastLevelSet3D::getDzPlus(int x, int y, int z) const {
    return forward<2>(*this, x, y, z, getZSpace());
}
double FastLevelSet3D::getDzUpwind(int x, int y, int z, double speed) const {
    return speed > 0.0 ? getDzMinus(x, y, z) : getDzPlus(x, y, z);
}

double FastLevelSet3D::getCurvature(int x, int y, int z) const {
    const Cross3D cross = readCross(*this, x, y, z);
    return BandTraits<FastLevelSet3D>::laplacian(cross.here, cross.beside,
                                                 BandTraits<FastLevelSet3D>::spacings(*this));
}

double FastLevelSet3D::getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx,
                                             double& dy, double& dz) const {
    const auto [here, beside] = readCross(*this, x, y, z);
    const double hx = getXSpace(), hy = getYSpace(), hz = getZSpace();
    dx = (vx > 0.0 ? here - beside[1] : beside[0] - here) / hx;
    dy = (vy > 0.0 ? here - beside[3] : beside[2] - here) / hy;
    dz = (vz > 0.0 ? here - beside[5] : beside[4] - here) / hz;
    // Along x from the left, where getCurvature begins on the right: the last bit may differ.
    const double minusTwice = here * -2.0;
    return ((beside[1] + minusTwice) + beside[0]) / (hx * hx) +
           ((beside[2] + minusTwice) + beside[3]) / (hy * hy) +
           ((beside[4] + minusTwice) + beside[5]) / (hz * hz);
}

double FastLevelSet3D::averageNormalLength() const {
    double sum = 0;
    std::size_t count = 0;
    auto& self = const_cast<FastLevelSet3D&>(*this);  // nothing is written
    withBandReader(self, *work_, [&](const auto& band, BandWorkspace<3>&) {
        band.forEach([&](const auto&, const auto& place) {
            if (!isInterior(band, place)) return;
            sum = sum + gradientLength(band, place);
            ++count;
        });
    });
    return sum / static_cast<double>(count);
}
