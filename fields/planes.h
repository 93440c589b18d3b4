#pragma once

#include <cstddef>

#include <quorbin.h>

#include "../io/image.h"

namespace quorbin::fields {

/// A plane of a field across x (0), y (1) or z (2); its axes are the two others in their order.
FullLevelSet2D planeOf(const FullLevelSet3D& field, std::size_t axis, int index);

/// Makes a plane ready to be drawn: where its spacings differ, it is resampled to square pixels, the field as
/// well as the picture that lies under it, if there is one. Returns whether it was.
bool makePixelsSquare(FullLevelSet2D& field, io::Image* picture);

/// Makes intensities greys, whole numbers from 0 for the darkest one to 255; what lies beyond is cut off.
void makeGreys(io::Image& picture, double darkest, double brightest);

}  // namespace quorbin::fields
