#pragma once

#include <quorbin2d.h>

/// Steps between reinitialisations: fewer and thin parts last longer, more and the outline drifts less.
constexpr int kReinitEvery = 10;

/// Moves the outline by its curvature for a number of explicit steps. The field becomes a signed distance
/// first, every reinitEvery steps, and at the end. Returns the number of steps after which nothing was left
/// of the outline, or -1.
int smooth(FullLevelSet2D& levelSet, int steps, int reinitEvery, bool showProgress);
