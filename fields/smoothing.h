#pragma once

#include <quorbin.h>

namespace quorbin::fields {

/// How the outline is smoothed.
struct Smoothing {
    /// In units of φt = κ |∇φ|.
    double time = 0;
    /// On a narrow band, which takes no options of the flow but its progress; beyond it the values end.
    bool onBand = false;
    CurvatureFlowOptions flow;
};

/// Moves the outline, or the surface in a volume, by its curvature (see quorbin::curvatureFlow), and makes
/// the field a signed distance; on a band one that ends four of the largest spacings from the outline. Where
/// nothing is left of the outline the field is of no use; where progress has ended it, it is as it was.
CurvatureFlowResult smooth(FullLevelSet2D& levelSet, const Smoothing& smoothing);
CurvatureFlowResult smooth(FullLevelSet3D& levelSet, const Smoothing& smoothing);

/// Time of the longest explicit step that is stable, 1 / (2/dx² + 2/dy² + 2/dz²).
double explicitStep(const FullLevelSet2D& levelSet);
double explicitStep(const FullLevelSet3D& levelSet);

}  // namespace quorbin::fields
