#include <utility>

#include "band/storage/table_of.h"
#include "band/storage/workspace.h"
#include "common/stepped.h"
#include "quorbin3d/fast_level_set_3d.h"

using lset::detail::stepped;

namespace {

/// Of a band that has not been made from a grid.
constexpr int kFewBuckets = 211;

/// Calls f with each entry that wanted(entry) holds for, also where either adds some.
template <class Wanted>
void forEachEntry(Point3Hash<double>& points, void (*f)(int, int, int, double&), Wanted wanted) {
    for (int b = 0; b < points.bucketCount; ++b)
        for (int i = 0; i < points.buckets[b].count; ++i)
            if (wanted(points.buckets[b][i]) && b < points.bucketCount && i < points.buckets[b].count) {
                Point3And<double>& entry = points.buckets[b][i];
                f(entry.x, entry.y, entry.z, entry.value);
            }
}

}  // namespace

FastLevelSet3D::FastLevelSet3D() : values_(kFewBuckets) {
    xSpace_ = 1.0;
    ySpace_ = 1.0;
    zSpace_ = 1.0;
}

FastLevelSet3D::~FastLevelSet3D() = default;

FastLevelSet3D::FastLevelSet3D(const FastLevelSet3D& other) : LevelSet3D(other), values_(other.values_) {}

FastLevelSet3D& FastLevelSet3D::operator=(const FastLevelSet3D& other) {
    values_ = other.values_;
    LevelSet3D::operator=(other);
    return *this;
}

FastLevelSet3D::FastLevelSet3D(FastLevelSet3D&& other) noexcept
    : LevelSet3D(other), values_(std::move(other.values_)), work_(std::move(other.work_)) {}

FastLevelSet3D& FastLevelSet3D::operator=(FastLevelSet3D&& other) noexcept {
    if (this == &other) return *this;
    values_.swap(other.values_);
    work_.swap(other.work_);
    LevelSet3D::operator=(other);
    other.values_.clear();
    return *this;
}

lset::detail::BandWorkspace<3>& FastLevelSet3D::work() const {
    if (!work_) work_ = std::make_unique<lset::detail::BandWorkspace<3>>();
    return *work_;
}

int FastLevelSet3D::getWidth() const { return -1; }
int FastLevelSet3D::getHeight() const { return -1; }
int FastLevelSet3D::getDepth() const { return -1; }

double FastLevelSet3D::get(int x, int y, int z) const {
    const double* value = values_.find(x, y, z);
    return value != nullptr ? *value : 0.0;
}

double& FastLevelSet3D::operator()(int x, int y, int z) { return values_(x, y, z); }

bool FastLevelSet3D::have(int x, int y, int z) const { return values_.find(x, y, z) != nullptr; }

void FastLevelSet3D::forEach(void (*f)(int, int, int, double&)) {
    forEachEntry(values_, f, [](const Point3And<double>&) { return true; });
}

void FastLevelSet3D::forEachWithNeigh(void (*f)(int, int, int, double&)) {
    forEachEntry(values_, f, [this](const Point3And<double>& entry) {
        const int x = entry.x, y = entry.y, z = entry.z;
        const int right = stepped(x, 1), above = stepped(y, 1), upper = stepped(z, 1);
        return have(right, y, z) && have(right, above, z) && have(x, above, z) && have(x, y, upper) &&
               have(right, y, upper) && have(right, above, upper) && have(x, above, upper);
    });
}

void FastLevelSet3D::release() {}

int FastLevelSet3D::size() const { return values_.size(); }

void FastLevelSet3D::makeOf(const std::vector<Point3And<double>>& points, double xSpace, double ySpace,
                            double zSpace) {
    values_ = lset::detail::tableOf<3>(points);
    xSpace_ = xSpace;
    ySpace_ = ySpace;
    zSpace_ = zSpace;
}

FastLevelSet3D quorbin::bandOf(const std::vector<Point3And<double>>& points, double xSpace, double ySpace,
                               double zSpace) {
    FastLevelSet3D band;
    band.makeOf(points, xSpace, ySpace, zSpace);
    return band;
}
