#include "common/stepped.h"
#include "quorbin2d/differences/stencils.h"
#include "quorbin2d/fast_level_set_2d.h"

using namespace lset::detail;

namespace {

// A band has no edge at which a difference would become another. The first operand is read first.

double oneSided(const FastLevelSet2D& band, int x1, int y1, int x0, int y0, double h) {
    const double end = band.get(x1, y1);
    const double start = band.get(x0, y0);
    return (end - start) / h;
}

struct Cross {
    double here, right, left, above, below;
};

Cross readCross(const FastLevelSet2D& band, int x, int y) {
    const double here = band.get(x, y);
    const double right = band.get(stepped(x, 1), y);
    const double left = band.get(stepped(x, -1), y);
    const double above = band.get(x, stepped(y, 1));
    const double below = band.get(x, stepped(y, -1));
    return {here, right, left, above, below};
}

}  // namespace

double FastLevelSet2D::getDxCentral(int x, int y) const {
    return oneSided(*this, stepped(x, 1), y, stepped(x, -1), y, 2 * getXSpace());
}
double FastLevelSet2D::getDxMinus(int x, int y) const {
    return oneSided(*this, x, y, stepped(x, -1), y, getXSpace());
}
double FastLevelSet2D::getDxPlus(int x, int y) const {
    return oneSided(*this, stepped(x, 1), y, x, y, getXSpace());
}
double FastLevelSet2D::getDxUpwind(int x, int y, double speed) const {
    return speed > 0.0 ? getDxMinus(x, y) : getDxPlus(x, y);
}

double FastLevelSet2D::getDyCentral(int x, int y) const {
    return oneSided(*this, x, stepped(y, 1), x, stepped(y, -1), 2 * getYSpace());
}
double FastLevelSet2D::getDyMinus(int x, int y) const {
    return oneSided(*this, x, y, x, stepped(y, -1), getYSpace());
}
double FastLevelSet2D::getDyPlus(int x, int y) const {
    return oneSided(*this, x, stepped(y, 1), x, y, getYSpace());
}
double FastLevelSet2D::getDyUpwind(int x, int y, double speed) const {
    return speed > 0.0 ? getDyMinus(x, y) : getDyPlus(x, y);
}

double FastLevelSet2D::getCurvature(int x, int y) const {
    const Cross value = readCross(*this, x, y);
    const double hx = getXSpace(), hy = getYSpace();
    return fivePoint(value.here * -2.0, value.right, value.left, value.above, value.below, Divide{hx * hx},
                     Divide{hy * hy});
}

double FastLevelSet2D::getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx,
                                             double& dy) const {
    const Cross value = readCross(*this, x, y);
    const double hx = getXSpace(), hy = getYSpace();
    dx = (vx > 0.0 ? value.here - value.left : value.right - value.here) / hx;
    dy = (vy > 0.0 ? value.here - value.below : value.above - value.here) / hy;
    // From the left, where getCurvature begins on the right: the last bit may differ.
    const double minusTwice = value.here * -2.0;
    return ((value.left + minusTwice) + value.right) / (hx * hx) +
           ((value.above + minusTwice) + value.below) / (hy * hy);
}
