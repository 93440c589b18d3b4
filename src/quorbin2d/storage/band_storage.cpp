#include "quorbin2d/fast_level_set_2d.h"

#include <utility>

#include "band/storage/table_of.h"
#include "band/storage/workspace.h"

namespace {

/// Of a band that has not been made from a grid.
constexpr int kFewBuckets = 211;

}  // namespace

FastLevelSet2D::FastLevelSet2D() : values_(kFewBuckets) {
    xSpace_ = 1.0;
    ySpace_ = 1.0;
}

FastLevelSet2D::~FastLevelSet2D() = default;

FastLevelSet2D::FastLevelSet2D(const FastLevelSet2D& other) : LevelSet2D(other), values_(other.values_) {}

FastLevelSet2D& FastLevelSet2D::operator=(const FastLevelSet2D& other) {
    values_ = other.values_;
    LevelSet2D::operator=(other);
    return *this;
}

FastLevelSet2D::FastLevelSet2D(FastLevelSet2D&& other) noexcept
    : LevelSet2D(other), values_(std::move(other.values_)), work_(std::move(other.work_)) {}

FastLevelSet2D& FastLevelSet2D::operator=(FastLevelSet2D&& other) noexcept {
    if (this == &other) return *this;
    values_.swap(other.values_);
    work_.swap(other.work_);
    LevelSet2D::operator=(other);
    other.values_.clear();
    return *this;
}

lset::detail::BandWorkspace<2>& FastLevelSet2D::work() const {
    if (!work_) work_ = std::make_unique<lset::detail::BandWorkspace<2>>();
    return *work_;
}

int FastLevelSet2D::getWidth() const { return -1; }
int FastLevelSet2D::getHeight() const { return -1; }

double FastLevelSet2D::get(int x, int y) const {
    const double* value = values_.find(x, y);
    return value != nullptr ? *value : 0.0;
}

double& FastLevelSet2D::operator()(int x, int y) { return values_(x, y); }

bool FastLevelSet2D::have(int x, int y) const { return values_.find(x, y) != nullptr; }

int FastLevelSet2D::size() const { return values_.size(); }

void FastLevelSet2D::makeOf(const std::vector<PointAnd<double>>& points, double xSpace, double ySpace) {
    values_ = lset::detail::tableOf<2>(points);
    xSpace_ = xSpace;
    ySpace_ = ySpace;
}

FastLevelSet2D quorbin::bandOf(const std::vector<PointAnd<double>>& points, double xSpace, double ySpace) {
    FastLevelSet2D band;
    band.makeOf(points, xSpace, ySpace);
    return band;
}
