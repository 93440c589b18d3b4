#include "quorbin2d/differences/readers.h"

using namespace lset::detail;

double FullLevelSet2D::getDxMinus(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return dxMinus(field, x, y); });
}

double FullLevelSet2D::getDxPlus(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return dxPlus(field, x, y); });
}

double FullLevelSet2D::getDxCentral(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return dxCentral(field, x, y); });
}

double FullLevelSet2D::getDxUpwind(int x, int y, double speed) const {
    return withReader(*this, [=](const auto& field) { return dxUpwind(field, x, y, speed); });
}

double FullLevelSet2D::getDyMinus(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return dyMinus(field, x, y); });
}

double FullLevelSet2D::getDyPlus(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return dyPlus(field, x, y); });
}

double FullLevelSet2D::getDyCentral(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return dyCentral(field, x, y); });
}

double FullLevelSet2D::getDyUpwind(int x, int y, double speed) const {
    return withReader(*this, [=](const auto& field) { return dyUpwind(field, x, y, speed); });
}

double FullLevelSet2D::getCurvature(int x, int y) const {
    return withReader(*this, [=](const auto& field) { return laplacian(field, x, y); });
}

double FullLevelSet2D::getCurvatureAndUpwind(int x, int y, double vx, double vy, double& dx,
                                             double& dy) const {
    dx = getDxUpwind(x, y, vx);
    dy = getDyUpwind(x, y, vy);
    return getCurvature(x, y);
}
