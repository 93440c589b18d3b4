#include "band/flows/band_flow.h"
#include "quorbin3d/differences/band_readers.h"

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FastLevelSet3D& band, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnBand(band, time, options);
}
