#pragma once

#include "progress.h"
#include "quorbin_export.h"

class FullLevelSet2D;
class FullLevelSet3D;

namespace quorbin {

/// Whether a field has two values, as one that is made of a mask has: one ≤ 0 and one above.
QUORBIN_EXPORT bool isMask(const FullLevelSet2D& field);
QUORBIN_EXPORT bool isMask(const FullLevelSet3D& field);

struct SmoothMaskOptions {
    /// Whether every sample keeps its side. If not, single samples may change theirs, for a smoother
    /// interface.
    bool keepsSides = true;
    Progress progress;
};

/// Makes a mask, or any field whose values are no more than sides, the signed distance to a smooth interface
/// that encloses the same area or volume: thirty explicit steps of motion by curvature that keeps the size,
/// under the constraint that samples stay on their sides (Whitaker 2000). Where the interface of a mask has
/// steps, of which no curvature can be taken, a disc of radius 40 gets its outline back within 0.07 samples
/// on average and 0.4 at most, and its curvature within a half; the mask's own outline is 0.19 and 0.5 off.
///
/// Returns false if progress ended it, with the field as it was. Throws NoInterface and what curvatureFlow
/// does.
QUORBIN_EXPORT bool smoothMask(FullLevelSet2D& field, const SmoothMaskOptions& options = {});
QUORBIN_EXPORT bool smoothMask(FullLevelSet3D& field, const SmoothMaskOptions& options = {});

}  // namespace quorbin
