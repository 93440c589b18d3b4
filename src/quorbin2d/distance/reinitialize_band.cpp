#include "band/distance/reinitialize_band.h"

#include "quorbin2d/differences/band_readers.h"

bool quorbin::reinitialize(FastLevelSet2D& band, const ReinitializeOptions& options) {
    return lset::detail::reinitializeBandUnlessEnded(band, options);
}
