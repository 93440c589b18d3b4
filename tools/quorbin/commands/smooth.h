#pragma once

#include <quorbin2d.h>

/// Moves the outline by its curvature for a number of explicit steps. The field becomes a signed distance
/// first, every reinitEvery steps, and at the end. Returns the number of steps after which nothing was left
/// of the outline, or -1.
int smooth(FullLevelSet2D& levelSet, int steps, int reinitEvery, bool showProgress);
