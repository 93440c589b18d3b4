#include "quorbin2d/full_level_set_2d.h"
#include "quorbin3d/full_level_set_3d.h"

namespace {

/// Writes the plane through the slot of out, whose sizes it has by now.
template <class Read>
void fillPlane(FullLevelSet2D& out, int width, int height, bool reinit, Read read) {
    for (int j = 0; j < height; ++j)
        for (int i = 0; i < width; ++i) out(i, j) = read(i, j);
    if (reinit) out.ensureSignedDistanceFMM();
}

}  // namespace

bool FullLevelSet3D::getXPlane(int x, FullLevelSet2D& out, bool reinit) const {
    if (x < 0 || x >= getWidth()) return false;
    const int width = getHeight();
    const int height = getDepth();
    const double hy = getYSpace();
    const double hz = getZSpace();
    if (!out.adopt(width, height, hy, hz)) return false;
    fillPlane(out, width, height, reinit, [=](int i, int j) { return get(x, i, j); });
    return true;
}

bool FullLevelSet3D::getYPlane(int y, FullLevelSet2D& out, bool reinit) const {
    if (y < 0 || y >= getHeight()) return false;
    const int width = getWidth();
    const int height = getDepth();
    const double hx = getXSpace();
    const double hz = getZSpace();
    if (!out.adopt(width, height, hx, hz)) return false;
    fillPlane(out, width, height, reinit, [=](int i, int j) { return get(i, y, j); });
    return true;
}

bool FullLevelSet3D::getZPlane(int z, FullLevelSet2D& out, bool reinit) const {
    if (z < 0 || z >= getDepth()) return false;
    const int width = getWidth();
    const int height = getHeight();
    const double hx = getXSpace();
    const double hy = getYSpace();
    if (!out.adopt(width, height, hx, hy)) return false;
    fillPlane(out, width, height, reinit, [=](int i, int j) { return get(i, j, z); });
    return true;
}
