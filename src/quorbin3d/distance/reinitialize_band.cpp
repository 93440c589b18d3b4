#include "band/distance/reinitialize_band.h"

#include "quorbin3d/differences/band_readers.h"

bool quorbin::reinitialize(FastLevelSet3D& band, const ReinitializeOptions& options) {
    return lset::detail::reinitializeBandUnlessEnded(band, options);
}
