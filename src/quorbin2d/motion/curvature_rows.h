#pragma once

namespace lset::detail {

/// One explicit curvature step of a dense grid in place: every value is read and written once. saved must
/// have room for as many values. The same bits as a step into a second array.
void curvatureRows(double* values, double* saved, int width, int height, double hx, double hy, double dt);

}  // namespace lset::detail
