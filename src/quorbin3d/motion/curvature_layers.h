#pragma once

namespace lset::detail {

/// Points along x, y and z.
struct Extent3D {
    int width, height, depth;
};

/// One explicit curvature step of a dense grid in place: every value is read and written once. saved must
/// have room for as many values. The same bits as a step into a second array.
void curvatureLayers(double* values, double* saved, Extent3D extent, double hx, double hy, double hz,
                     double dt);

}  // namespace lset::detail
