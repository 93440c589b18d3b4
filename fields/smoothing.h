#pragma once

#include <quorbin.h>

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
    /// Keeps a copy of the field, of 8 bytes a point, where progress may end the smoothing. Without it the
    /// field of one that is ended on a dense grid is lost.
    bool restores = true;
};

/// Moves the outline, or the surface in a volume, by its curvature. The field becomes a signed distance
/// first, every reinitEvery steps, and at the end. Returns the number of steps after which nothing was left
/// of the outline; kStillThere; or kEnded where progress, told of each step, has ended it, and then the field
/// is as it was.
constexpr int kStillThere = -1, kEnded = -2;
int smooth(FullLevelSet2D& levelSet, const Smoothing& smoothing, const Progress& progress);
int smooth(FullLevelSet3D& levelSet, const Smoothing& smoothing, const Progress& progress);

}  // namespace quorbin::fields
