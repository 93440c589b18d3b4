#pragma once

#include <quorbin.h>

#include "progress.h"

namespace quorbin::fields {

/// Steps between reinitialisations: fewer and thin parts last longer, more and the outline drifts less.
constexpr int kReinitEvery = 10;

/// How the outline is smoothed.
struct Smoothing {
    int steps = 0;
    int reinitEvery = kReinitEvery;
    /// Of each implicit step, 1 in a volume; 0 for explicit ones of the largest stable time.
    double implicitTime = 0;
    /// Reinitialised at every implicit step, or every second explicit one, of which fewer make the same time.
    bool onBand = false;
};

/// Moves the outline, or the surface in a volume, by its curvature. The field becomes a signed distance
/// first, every reinitEvery steps, and at the end. Returns the number of steps after which nothing was left
/// of the outline, or -1.
int smooth(FullLevelSet2D& levelSet, const Smoothing& smoothing, const ProgressFunction& progress);
int smooth(FullLevelSet3D& levelSet, const Smoothing& smoothing, const ProgressFunction& progress);

}  // namespace quorbin::fields
