#include "sample.h"

#include "band/distance/band_source.h"
#include "common/distance/point_sampler.h"
#include "quorbin2d/differences/band_readers.h"
#include "quorbin2d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

using Points = std::vector<brin::Vec2<double>>;
using Samples = std::vector<Sample2D>;

std::optional<Samples> sample(const FullLevelSet2D& field, const Points& points, const Progress& progress) {
    using Traits = DenseTraits<FullLevelSet2D>;
    const DenseSource<2> source(field.data(), Traits::sizes(field));
    return unlessEnded(progress, [&](const Stretch& whole) {
        return samplesAt<Sample2D, 2>(source, Traits::spacings(field), points, whole);
    });
}

std::optional<Samples> sample(const FastLevelSet2D& band, const Points& points, const Progress& progress) {
    const BandSource<2> source(band.points());
    return unlessEnded(progress, [&](const Stretch& whole) {
        return samplesAt<Sample2D, 2>(source, BandTraits<FastLevelSet2D>::spacings(band), points, whole);
    });
}

Samples sample(const FullLevelSet2D& field, const Points& points) {
    return *sample(field, points, Progress());
}
Samples sample(const FastLevelSet2D& band, const Points& points) { return *sample(band, points, Progress()); }

}  // namespace quorbin
