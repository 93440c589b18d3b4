#include <cmath>

#include "quorbin3d/differences/readers.h"

using namespace lset::detail;

double FullLevelSet3D::getDxMinus(int x, int y, int z) const {
    return backward<0>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDxPlus(int x, int y, int z) const {
    return forward<0>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDxCentral(int x, int y, int z) const {
    const int points = VirtualReader3D{*this}.width();
    if (x == 0) return getDxPlus(x, y, z);
    if (x == points - 1) return getDxMinus(x, y, z);
    return centralInside<0>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDxUpwind(int x, int y, int z, double speed) const {
    return speed > 0 ? getDxMinus(x, y, z) : getDxPlus(x, y, z);
}

double FullLevelSet3D::getDyMinus(int x, int y, int z) const {
    return backward<1>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDyPlus(int x, int y, int z) const {
    return forward<1>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDyCentral(int x, int y, int z) const {
    const int points = VirtualReader3D{*this}.height();
    if (y == 0) return getDyPlus(x, y, z);
    if (y == points - 1) return getDyMinus(x, y, z);
    return centralInside<1>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDyUpwind(int x, int y, int z, double speed) const {
    return speed > 0 ? getDyMinus(x, y, z) : getDyPlus(x, y, z);
}

double FullLevelSet3D::getDzMinus(int x, int y, int z) const {
    return backward<2>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDzPlus(int x, int y, int z) const {
    return forward<2>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDzCentral(int x, int y, int z) const {
    const int points = VirtualReader3D{*this}.depth();
    if (z == 0) return getDzPlus(x, y, z);
    if (z == points - 1) return getDzMinus(x, y, z);
    return centralInside<2>(VirtualReader3D{*this}, x, y, z);
}
double FullLevelSet3D::getDzUpwind(int x, int y, int z, double speed) const {
    return speed > 0 ? getDzMinus(x, y, z) : getDzPlus(x, y, z);
}

double FullLevelSet3D::getCurvature(int x, int y, int z) const {
    return laplacian(VirtualReader3D{*this}, x, y, z);
}

double FullLevelSet3D::getCurvatureAndUpwind(int x, int y, int z, double vx, double vy, double vz, double& dx,
                                             double& dy, double& dz) const {
    dx = getDxUpwind(x, y, z, vx);
    dy = getDyUpwind(x, y, z, vy);
    dz = getDzUpwind(x, y, z, vz);
    return getCurvature(x, y, z);
}

double FullLevelSet3D::averageNormalLength() const {
    return withReader(*this, [this](const auto& field) {
        double sum = 0.0;
        for (int z = 0; z < depth_; ++z)
            for (int y = 0; y < height_; ++y)
                for (int x = 0; x < width_; ++x) {
                    const double dx = field.dxCentral(x, y, z);
                    const double dy = field.dyCentral(x, y, z);
                    const double dz = field.dzCentral(x, y, z);
                    sum += std::sqrt(dx * dx + dy * dy + dz * dz);
                }
        return sum / static_cast<double>(size());
    });
}
