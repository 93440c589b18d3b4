#include "quorbin2d/full_level_set_2d.h"
#include "quorbin3d/full_level_set_3d.h"

namespace {

/// An axis of the volume that becomes one of the plane.
struct Axis {
    int points;
    double spacing;
};

template <class Read>
bool fillPlane(Axis first, Axis second, FullLevelSet2D& out, bool reinit, Read read) {
    out.release();
    out.init(first.points, second.points, first.spacing, second.spacing);
    if (out.getWidth() != first.points || out.getHeight() != second.points) return false;
    for (int j = 0; j < second.points; ++j)
        for (int i = 0; i < first.points; ++i) out(i, j) = read(i, j);
    if (reinit) out.ensureSignedDistanceFMM();
    return true;
}

}  // namespace

bool FullLevelSet3D::getXPlane(int x, FullLevelSet2D& out, bool reinit) const {
    if (x < 0 || x >= getWidth()) return false;
    return fillPlane({getHeight(), getYSpace()}, {getDepth(), getZSpace()}, out, reinit,
                     [=](int i, int j) { return get(x, i, j); });
}

bool FullLevelSet3D::getYPlane(int y, FullLevelSet2D& out, bool reinit) const {
    if (y < 0 || y >= getHeight()) return false;
    return fillPlane({getWidth(), getXSpace()}, {getDepth(), getZSpace()}, out, reinit,
                     [=](int i, int j) { return get(i, y, j); });
}

bool FullLevelSet3D::getZPlane(int z, FullLevelSet2D& out, bool reinit) const {
    if (z < 0 || z >= getDepth()) return false;
    return fillPlane({getWidth(), getXSpace()}, {getHeight(), getYSpace()}, out, reinit,
                     [=](int i, int j) { return get(i, j, z); });
}
