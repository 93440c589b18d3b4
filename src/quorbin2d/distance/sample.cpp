#include "sample.h"

#include "band/distance/band_source.h"
#include "common/distance/point_sampler.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

std::vector<Sample2D> sample(const FullLevelSet2D& field, const std::vector<brin::Vec2<double>>& points) {
    using Traits = DenseTraits<FullLevelSet2D>;
    const DenseSource<2> source(field.data(), Traits::sizes(field));
    return samplesAt<Sample2D, 2>(source, Traits::spacings(field), points);
}

std::vector<Sample2D> sample(const FastLevelSet2D& band, const std::vector<brin::Vec2<double>>& points) {
    const BandSource<2> source(band.points());
    return samplesAt<Sample2D, 2>(source, BandTraits<FastLevelSet2D>::spacings(band), points);
}

}  // namespace quorbin
