#pragma once

#include "io/image.h"

namespace quorbin::tool {

/// A grey picture of 512 × 512 pixels, the same on every machine: letters and blobs, blurred edges, much
/// noise.
io::Image demoPicture();

/// Distance in pixels from (x, y) to the shapes in the demo picture, negative inside.
double demoShapes(double x, double y);

}  // namespace quorbin::tool
