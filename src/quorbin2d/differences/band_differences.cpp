#include "band/differences/stencils.h"
#include "quorbin2d/differences/band_readers.h"

using namespace lset::detail;

double FastLevelSet2D::getDxCentral(int x, int y) const {
    return central<0>(*this, BandPoint<2>{x, y}, getXSpace());
}
double FastLevelSet2D::getDxMinus(int x, int y) const {
    return backward<0>(*this, BandPoint<2>{x, y}, getXSpace());
}
double FastLevelSet2D::getDxPlus(int x, int y) const {
    return forward<0>(*this, BandPoint<2>{x, y}, getXSpace());
}
double FastLevelSet2D::getDxUpwind(int x, int y, double speed) const {
    return speed > 0.0 ? getDxMinus(x, y) : getDxPlus(x, y);
}

double FastLevelSet2D::getDyCentral(int x, int y) const {
    return central<1>(*this, BandPoint<2>{x, y}, getYSpace());
}
double FastLevelSet2D::getDyMinus(int x, int y) const {
    return backward<1>(*this, BandPoint<2>{x, y}, getYSpace());
}
double FastLevelSet2D::getDyPlus(int x, int y) const {
    return forward<1>(*this, BandPoint<2>{x, y}, getYSpace());
}
double FastLevelSet2D::getDyUpwind(int x, int y, double speed) const {
    return speed > 0.0 ? getDyMinus(x, y) : getDyPlus(x, y);
}

double FastLevelSet2D::getCurvature(int x, int y) const {
    return laplacian(readCross(*this, BandPoint<2>{x, y}), BandTraits<FastLevelSet2D>::spacings(*this));
}

double FastLevelSet2D::getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx,
                                             double& dy) const {
    const BandCross<2> cross = readCross(*this, BandPoint<2>{x, y});
    const std::array<double, 2> h = BandTraits<FastLevelSet2D>::spacings(*this);
    dx = cross.upwind(0, vx, h[0]);
    dy = cross.upwind(1, vy, h[1]);
    return laplacianFromBefore(cross, h);
}
