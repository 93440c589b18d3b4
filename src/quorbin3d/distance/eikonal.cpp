#include "quorbin3d/eikonal.h"

#include "quorbin3d/distance/estimate.h"

using namespace lset::detail;

double quadraticFMM(double a, double b, double c, double hx, double hy, double hz) {
    return EikonalQuadratics3D(hx, hy, hz).triple(a, b, c);
}

double estimateDistanceHelper(int xMinusKnown, int xPlusKnown, int yPlusKnown, int yMinusKnown,
                              int zPlusKnown, int zMinusKnown, double xMinus, double xPlus, double yPlus,
                              double yMinus, double zPlus, double zMinus, double hx, double hy, double hz) {
    const auto ifKnown = [](int known, const double& distance) { return known != 0 ? &distance : nullptr; };
    KnownNeighbours3D known;
    known[kXMinus] = ifKnown(xMinusKnown, xMinus);
    known[kXPlus] = ifKnown(xPlusKnown, xPlus);
    known[kYMinus] = ifKnown(yMinusKnown, yMinus);
    known[kYPlus] = ifKnown(yPlusKnown, yPlus);
    known[kZMinus] = ifKnown(zMinusKnown, zMinus);
    known[kZPlus] = ifKnown(zPlusKnown, zPlus);
    return estimateFrom(known, EikonalQuadratics3D(hx, hy, hz)).distance;
}
