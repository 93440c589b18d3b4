#include "offset.h"

#include "band/distance/offset_band.h"
#include "common/distance/offset_dense.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

FullLevelSet2D offset(const FullLevelSet2D& field, double distance) { return offsetGrid(field, distance); }
FastLevelSet2D offset(const FastLevelSet2D& band, double distance) { return offsetBand(band, distance); }

FullLevelSet2D opened(const FullLevelSet2D& field, double radius) {
    return offset(offset(field, -checkedRadius(radius)), radius);
}
FastLevelSet2D opened(const FastLevelSet2D& band, double radius) {
    return offset(offset(band, -checkedRadius(radius)), radius);
}

FullLevelSet2D closed(const FullLevelSet2D& field, double radius) {
    return offset(offset(field, checkedRadius(radius)), -radius);
}
FastLevelSet2D closed(const FastLevelSet2D& band, double radius) {
    return offset(offset(band, checkedRadius(radius)), -radius);
}

}  // namespace quorbin
