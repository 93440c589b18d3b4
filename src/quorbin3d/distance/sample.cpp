#include "sample.h"

#include "band/distance/band_source.h"
#include "common/distance/point_sampler.h"
#include "quorbin3d/differences/band_readers.h"
#include "quorbin3d/storage/dense_traits.h"

using namespace lset::detail;

namespace quorbin {

using Points = std::vector<brin::Vec3<double>>;
using Samples = std::vector<Sample3D>;

std::optional<Samples> sample(const FullLevelSet3D& field, const Points& points, const Progress& progress) {
    using Traits = DenseTraits<FullLevelSet3D>;
    const DenseSource<3> source(field.data(), Traits::sizes(field));
    return unlessEnded(progress, [&](const Stretch& whole) {
        return samplesAt<Sample3D, 3>(source, Traits::spacings(field), points, whole);
    });
}

std::optional<Samples> sample(const FastLevelSet3D& band, const Points& points, const Progress& progress) {
    const BandSource<3> source(band.points());
    return unlessEnded(progress, [&](const Stretch& whole) {
        return samplesAt<Sample3D, 3>(source, BandTraits<FastLevelSet3D>::spacings(band), points, whole);
    });
}

Samples sample(const FullLevelSet3D& field, const Points& points) {
    return *sample(field, points, Progress());
}
Samples sample(const FastLevelSet3D& band, const Points& points) { return *sample(band, points, Progress()); }

}  // namespace quorbin
