#include "smoothing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "band.h"
#include "from_samples.h"
#include "grids.h"
#include "unchanged.h"

namespace quorbin::fields {

namespace {

/// Whether the samples on the border lie on both sides: then the outline meets it.
template <class Grid>
bool meetsBorder(const Grid& grid) {
    const std::array<int, 3> size = sizeOf(grid);
    const double* const values = grid.data();
    const bool isFirstInside = values[0] <= 0;
    const std::ptrdiff_t width = size[0], layer = width * size[1];
    for (int z = 0; z < size[2]; ++z)
        for (int y = 0; y < size[1]; ++y) {
            const bool isOnFace = y == 0 || y == size[1] - 1 || (size[2] > 1 && (z == 0 || z == size[2] - 1));
            const std::ptrdiff_t step = isOnFace ? 1 : std::max<std::ptrdiff_t>(width - 1, 1);
            for (std::ptrdiff_t x = 0; x < width; x += step)
                if ((values[z * layer + y * width + x] <= 0) != isFirstInside) return true;
        }
    return false;
}

/// An outline that meets the border is mirrored there anew before what lies beyond has moved much.
template <std::size_t dimensions, class Grid>
CurvatureFlowResult smoothOnBand(Grid& levelSet, const Smoothing& smoothing) {
    constexpr double kStepsBetweenMirrors = 8;
    constexpr double kReach = 4;  // of the largest spacing, as the flow keeps it
    const auto [hx, hy, hz] = spacingOf(levelSet);
    const double reach = kReach * (dimensions == 2 ? std::max(hx, hy) : std::max({hx, hy, hz}));
    const bool isCut = meetsBorder(levelSet);
    const double parts =
        isCut ? std::max(1.0, std::ceil(smoothing.time / (kStepsBetweenMirrors * explicitStep(levelSet))))
              : 1;
    // The image of an outline that the border does not cut would be cut itself, and go its own way.
    const auto border = isCut ? Band<dimensions>::Border::kMirrored : Band<dimensions>::Border::kOpen;
    const Progress& told = smoothing.flow.progress;
    UnchangedUnlessDone<Grid> guard(levelSet, static_cast<bool>(told));
    // A band has too few samples beside the outline for a first distance that is exact.
    quorbin::reinitialize(levelSet);
    CurvatureFlowOptions flow = smoothing.flow;
    CurvatureFlowResult all;
    for (double part = 0; part < parts; ++part) {
        if (told)
            flow.progress = [&](int done, int of) {
                return told(static_cast<int>((part * of + done) / parts), of);
            };
        Band<dimensions> band(levelSet, reach, border);
        const CurvatureFlowResult one = curvatureFlow(band.points(), smoothing.time / parts, flow);
        all.steps += one.steps;
        all.time = part * (smoothing.time / parts) + one.time;
        all.isEnded = one.isEnded;
        if (one.isEnded) return all;
        band.copyTo(levelSet);
        all.hasVanished = !hasCrossing(levelSet);
        if (all.hasVanished) break;
    }
    if (!all.hasVanished) all.time = smoothing.time;
    guard.done();
    return all;
}

}  // namespace

double explicitStep(const FullLevelSet2D& levelSet) {
    const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace();
    return 1 / (2 / (hx * hx) + 2 / (hy * hy));
}

double explicitStep(const FullLevelSet3D& levelSet) {
    const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace(), hz = levelSet.getZSpace();
    return 1 / (2 / (hx * hx) + 2 / (hy * hy) + 2 / (hz * hz));
}

CurvatureFlowResult smooth(FullLevelSet2D& levelSet, const Smoothing& smoothing) {
    if (smoothing.onBand) return smoothOnBand<2>(levelSet, smoothing);
    return curvatureFlow(levelSet, smoothing.time, smoothing.flow);
}

CurvatureFlowResult smooth(FullLevelSet3D& levelSet, const Smoothing& smoothing) {
    if (smoothing.onBand) return smoothOnBand<3>(levelSet, smoothing);
    return curvatureFlow(levelSet, smoothing.time, smoothing.flow);
}

}  // namespace quorbin::fields
