#include "offset.h"

#include "band/distance/offset_band.h"
#include "common/distance/offset_dense.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

FullLevelSet3D offset(const FullLevelSet3D& field, double distance) { return offsetGrid(field, distance); }
FastLevelSet3D offset(const FastLevelSet3D& band, double distance) { return offsetBand(band, distance); }

FullLevelSet3D opened(const FullLevelSet3D& field, double radius) {
    return offset(offset(field, -checkedRadius(radius)), radius);
}
FastLevelSet3D opened(const FastLevelSet3D& band, double radius) {
    return offset(offset(band, -checkedRadius(radius)), radius);
}

FullLevelSet3D closed(const FullLevelSet3D& field, double radius) {
    return offset(offset(field, checkedRadius(radius)), -radius);
}
FastLevelSet3D closed(const FastLevelSet3D& band, double radius) {
    return offset(offset(band, checkedRadius(radius)), -radius);
}

}  // namespace quorbin
