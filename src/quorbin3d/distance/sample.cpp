#include "sample.h"

#include "band/distance/band_source.h"
#include "common/distance/point_sampler.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

std::vector<Sample3D> sample(const FullLevelSet3D& field, const std::vector<brin::Vec3<double>>& points) {
    using Traits = DenseTraits<FullLevelSet3D>;
    const DenseSource<3> source(field.data(), Traits::sizes(field));
    return samplesAt<Sample3D, 3>(source, Traits::spacings(field), points);
}

std::vector<Sample3D> sample(const FastLevelSet3D& band, const std::vector<brin::Vec3<double>>& points) {
    const BandSource<3> source(band.points());
    return samplesAt<Sample3D, 3>(source, BandTraits<FastLevelSet3D>::spacings(band), points);
}

}  // namespace quorbin
