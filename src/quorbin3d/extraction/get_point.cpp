#include "quorbin3d/extraction/gradients.h"

using namespace lset::detail;

Vec3 LevelSet3D::getPoint(int x1, int y1, int z1, int x2, int y2, int z2, Vec3* normal) const {
    const double a = get(x1, y1, z1);
    const double b = get(x2, y2, z2);
    const VirtualReader3D field{*this};
    return zeroCrossing({x1, y1, z1}, a, {x2, y2, z2}, b, normal, FreshGradients<VirtualReader3D>(field));
}
