#include "band/flows/band_flow.h"
#include "quorbin2d/differences/band_readers.h"

quorbin::CurvatureFlowResult quorbin::curvatureFlow(FastLevelSet2D& band, double time,
                                                    const CurvatureFlowOptions& options) {
    return lset::detail::flowOnBand(band, time, options);
}
