#pragma once

#include "progress.h"
#include "quorbin_export.h"

class FastLevelSet2D;
class FastLevelSet3D;
class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

struct CurvatureFlowOptions {
    enum class Steps {
        kFastest,   ///< on a dense grid kLarge where those are long enough to pay; else kExplicit
        kExplicit,  ///< of 1 / (rate (2/hx² + 2/hy² + 2/hz²)), the longest that are stable
        kLarge,     ///< semi-implicit ones that choose themselves; dense grids only
    };
    Steps steps = Steps::kFastest;

    /// b in φt = b κ |∇φ|.
    double rate = 1;

    /// Keeps the enclosed area or volume: the mean of b κ over the interface is taken from it everywhere.
    /// Dense grids only.
    bool keepsSize = false;

    /// No sample changes its side, as that of a mask must not. In explicit steps, on dense grids only.
    bool keepsSides = false;

    /// Above 0: min/max flow (after Malladi and Sethian 1996), which moves only what bends within about so
    /// many samples, and leaves the rest of the shape where it is. In explicit steps, on dense grids only.
    int noiseRadius = 0;

    /// Of large steps: how far two halves of a step may differ from the whole one, as a part of the way. The
    /// error of the flow is about a tenth of it.
    double tolerance = 0.018;

    /// Told of the time that is done.
    Progress progress;
};

struct CurvatureFlowResult {
    double time = 0;  ///< how far the flow came: less than asked where the interface has vanished
    int steps = 0;    ///< how many steps it took
    bool hasVanished =
        false;             ///< the last piece of the interface has shrunk away: all values are on one side
    bool isEnded = false;  ///< by progress: the level set is as it was
};

/// Moves the interface by its curvature, φt = b κ |∇φ| with κ = div(∇φ/|∇φ|), for a time, and makes the field
/// a signed distance. κ is 1/r on a circle and 2/r on a sphere, with inside convex, so that at b = 1 a disc
/// of radius r is gone after r²/2 and a ball after r²/4, in squares of world units. Any field with an
/// interface will do. Beyond the border the field goes on as its mirror image, so that contours meet it at
/// right angles.
///
/// Derivatives are central differences; the field is reinitialised on the way (see reinitialize). Explicit
/// steps move the area of a disc of radius 40 right to 0.01 %. Large steps solve
///
///     Π (1 − dt b Dᵢᵢ) (φⁿ⁺¹ − φⁿ) = dt b κ |∇φ|,
///
/// semi-implicitly (Smereka 2003) and one axis after the other, so that any step is stable; a step and two
/// half ones are extrapolated (Richardson), and their difference sets the next step: 30 to 100 times as long
/// as explicit ones, and within 0.5 %.
///
/// Throws NoInterface, std::invalid_argument if the time, an option or a spacing is out of range, and
/// std::bad_alloc; the level set is then as it was, but for memory that runs out between two steps. A band
/// moves in explicit steps and gets four samples to each side; one whose interface vanishes becomes empty.
/// Takes 16 bytes a point beside the grid, and 8 more if there is progress to be told.
QUORBIN_EXPORT CurvatureFlowResult curvatureFlow(FullLevelSet2D& field, double time,
                                                 const CurvatureFlowOptions& options = {});
QUORBIN_EXPORT CurvatureFlowResult curvatureFlow(FullLevelSet3D& field, double time,
                                                 const CurvatureFlowOptions& options = {});
QUORBIN_EXPORT CurvatureFlowResult curvatureFlow(FastLevelSet2D& band, double time,
                                                 const CurvatureFlowOptions& options = {});
QUORBIN_EXPORT CurvatureFlowResult curvatureFlow(FastLevelSet3D& band, double time,
                                                 const CurvatureFlowOptions& options = {});

}  // namespace quorbin
