#pragma once

#include "raster.h"

/// A grey picture of 512 × 512 pixels, the same on every machine: letters and blobs, blurred edges, much
/// noise.
Raster demoPicture();

/// Distance in pixels from (x, y) to the shapes in the demo picture, negative inside.
double demoShapes(double x, double y);
