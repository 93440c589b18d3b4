#include "band.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include "../io/documents.h"

namespace quorbin::fields {

namespace {

std::array<int, 2> sizeOf(const FullLevelSet2D& grid) { return {grid.getWidth(), grid.getHeight()}; }
std::array<int, 3> sizeOf(const FullLevelSet3D& grid) {
    return {grid.getWidth(), grid.getHeight(), grid.getDepth()};
}

std::array<int, 2> pointOf(const PointAnd<double>& entry) { return {entry.x, entry.y}; }
std::array<int, 3> pointOf(const Point3And<double>& entry) { return {entry.x, entry.y, entry.z}; }

bool isInside(int c, int count) { return c >= 0 && c < count; }

template <class LevelSet, class Point>
double& valueAt(LevelSet& levelSet, const Point& p) {
    return std::apply([&](auto... c) -> double& { return levelSet(c...); }, p);
}

/// Fills what is not a number between values, row after row: from one value to the next all is on the side of
/// the first.
void fillGaps(double* values, std::ptrdiff_t width, std::ptrdiff_t rows, std::ptrdiff_t rowsInLayer,
              double reach) {
    double* const end = values + width * rows;
    const double* const first = std::find_if(values, end, [](double v) { return !std::isnan(v); });
    const auto sideOf = [=](double value) { return value > 0 ? reach : -reach; };
    double layerSide = first != end ? sideOf(*first) : reach, rowSide = layerSide;
    for (std::ptrdiff_t y = 0; y < rows; ++y) {
        double* const row = values + y * width;
        const bool beginsLayer = y % rowsInLayer == 0;
        double side = beginsLayer ? layerSide : rowSide;
        for (std::ptrdiff_t x = 0; x < width; ++x) {
            if (std::isnan(row[x]))
                row[x] = side;
            else
                side = sideOf(row[x]);
        }
        rowSide = sideOf(row[0]);
        if (beginsLayer) layerSide = rowSide;
    }
}

template <class Points, class Grid>
void write(const Points& band, double reach, Grid& field) {
    const auto size = sizeOf(field);
    constexpr std::size_t dimensions = std::tuple_size_v<std::decay_t<decltype(size)>>;
    std::ptrdiff_t rows = 1;
    for (std::size_t axis = 1; axis < dimensions; ++axis) rows *= size[axis];
    const std::ptrdiff_t width = size[0];
    std::fill_n(field.data(), width * rows, std::numeric_limits<double>::quiet_NaN());
    for (const auto& bucket : band.points().buckets)
        for (const auto& entry : bucket) {
            const auto p = pointOf(entry);
            bool isInGrid = true;
            for (std::size_t axis = 0; axis < dimensions; ++axis)
                if (!isInside(p[axis], size[axis])) isInGrid = false;
            if (isInGrid) valueAt(field, p) = std::clamp(entry.value, -reach, reach);
        }
    // The band is closed, so that the sides are those of its edge.
    fillGaps(field.data(), width, rows, dimensions == 2 ? rows : size[1], reach);
}

}  // namespace

void writeBand(const FastLevelSet2D& band, double reach, FullLevelSet2D& field) { write(band, reach, field); }
void writeBand(const FastLevelSet3D& band, double reach, FullLevelSet3D& field) { write(band, reach, field); }

bool suitsABand(std::initializer_list<double> spacings) {
    constexpr double kMostUnequal = 20;
    return std::max(spacings) <= kMostUnequal * std::min(spacings);
}

template <std::size_t dimensions>
Band<dimensions>::Band(const Grid& distance, double reach, Border border)
    : size_(sizeOf(distance)), reach_(reach), border_(border), band_(quorbin::bandOf(distance, false)) {
    const double* value = distance.data();
    std::array<int, dimensions> p{};
    for (std::size_t left = io::pointsOf(distance); left > 0; --left, ++value) {
        if (std::abs(*value) < reach) valueAt(band_, p) = *value;
        for (std::size_t axis = 0; axis < dimensions && ++p[axis] == size_[axis]; ++axis) p[axis] = 0;
    }
    mirror();
}

template <std::size_t dimensions>
bool Band<dimensions>::reinitialise() {
    try {
        quorbin::reinitialize(band_);
    } catch (const NoInterface&) {
        return false;
    }
    mirror();
    return true;
}

template <std::size_t dimensions>
void Band<dimensions>::mirror() {
    if (border_ == Border::kOpen) return;
    for (std::size_t axis = 0; axis < dimensions; ++axis) mirror(axis);
}

template <std::size_t dimensions>
void Band<dimensions>::mirror(std::size_t axis) {
    constexpr int kMargin = 8;  // what is wrong beyond does not come so far in as many steps
    const int count = size_[axis];
    std::vector<std::pair<std::array<int, dimensions>, double>> beyond;
    for (const auto& bucket : band_.points().buckets)
        for (const auto& entry : bucket) {
            auto p = pointOf(entry);
            bool isBeside = true;
            for (std::size_t other = 0; other < dimensions; ++other)
                if (other != axis && !isInside(p[other], size_[other])) isBeside = false;
            const int c = p[axis];
            p[axis] = c > 0 && c <= kMargin                       ? -c
                      : c >= count - 1 - kMargin && c < count - 1 ? 2 * (count - 1) - c
                                                                  : c;
            if (isBeside && p[axis] != c) beyond.emplace_back(p, entry.value);
        }
    for (const auto& [p, value] : beyond) valueAt(band_, p) = value;
}

template class Band<2>;
template class Band<3>;

}  // namespace quorbin::fields
