#include "distance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "../io/documents.h"
#include "unchanged.h"

namespace quorbin::fields {

using io::pointsOf;

namespace {

template <class Grid>
bool isAllFinite(const Grid& field) {
    bool found = false;
    for (std::size_t i = 0; i < pointsOf(field); ++i) found |= !std::isfinite(field.data()[i]);
    return !found;
}

/// What is not finite has a side, but nothing by which a crossing could be placed: it takes the largest
/// magnitude of the others. Not-a-number is outside.
template <class Grid>
void makeFinite(Grid& field) {
    double* const value = field.data();
    double largest = 0;
    for (std::size_t i = 0; i < pointsOf(field); ++i)
        if (std::isfinite(value[i])) largest = std::max(largest, std::abs(value[i]));
    if (!(largest > 0)) largest = 1;
    for (std::size_t i = 0; i < pointsOf(field); ++i)
        if (!std::isfinite(value[i])) value[i] = value[i] <= 0 ? -largest : largest;
}

template <class Grid>
bool march(Grid& field, const Progress& progress) {
    if (isAllFinite(field)) return quorbin::ensureSignedDistanceFMM(field, progress);
    UnchangedUnlessDone<Grid> guard(field, true);
    makeFinite(field);
    if (!quorbin::ensureSignedDistanceFMM(field, progress)) return false;
    guard.done();
    return true;
}

/// Replaces the values that no crossing lies beside.
void setFarFromCrossings(FullLevelSet2D& field, double magnitude) {
    const auto width = static_cast<std::size_t>(field.getWidth());
    double* const value = field.data();
    std::vector<bool> beside(pointsOf(field));
    const auto compare = [&](std::size_t i, std::size_t j) {
        if ((value[i] > 0) != (value[j] > 0)) beside[i] = beside[j] = true;
    };
    for (std::size_t i = 0; i < beside.size(); ++i) {
        if ((i + 1) % width != 0) compare(i, i + 1);
        if (i + width < beside.size()) compare(i, i + width);
    }
    for (std::size_t i = 0; i < beside.size(); ++i)
        if (!beside[i]) value[i] = value[i] > 0 ? magnitude : -magnitude;
}

bool distanceToSegments(FullLevelSet2D& field, DistanceMethod<FullLevelSet2D> measure,
                        const Progress& progress) {
    const std::size_t count = pointsOf(field);
    double* const value = field.data();
    UnchangedUnlessDone<FullLevelSet2D> guard(field, static_cast<bool>(progress));
    // No distance that is measured reaches this one: it shows what has been left out.
    const double unreached = std::sqrt(2.0 * static_cast<double>(count));
    makeFinite(field);
    setFarFromCrossings(field, unreached);
    if (!measure(field, progress)) return false;
    const auto isUnreached = [=](double distance) { return std::abs(distance) >= unreached; };
    FullLevelSet2D marched;
    if (std::any_of(value, value + count, isUnreached)) {
        marched.init(field.getWidth(), field.getHeight(), 1.0, 1.0);
        std::copy_n(value, count, marched.data());
        if (!distanceByMarching(marched, progress)) return false;
    }
    const double spacing = field.getXSpace();
    for (std::size_t i = 0; i < count; ++i)
        value[i] = spacing * (isUnreached(value[i]) ? marched.data()[i] : value[i]);
    guard.done();
    return true;
}

/// The values of a mask have no slope beside its outline to go along: those of a march have.
template <class Grid>
bool project(Grid& field, const Progress& progress) {
    UnchangedUnlessDone<Grid> guard(field, static_cast<bool>(progress));
    if (isMask(field) && !distanceByMarching(field, progress)) return false;
    if (!reinitialize(field, {0, progress})) return false;
    guard.done();
    return true;
}

}  // namespace

bool distanceByProjection(FullLevelSet2D& field, const Progress& progress) {
    return project(field, progress);
}

bool distanceByProjection(FullLevelSet3D& field, const Progress& progress) {
    return project(field, progress);
}

bool distanceByMarching(FullLevelSet2D& field, const Progress& progress) { return march(field, progress); }

bool distanceByMarching(FullLevelSet3D& field, const Progress& progress) { return march(field, progress); }

bool distanceBySegments(FullLevelSet2D& field, const Progress& progress) {
    return distanceToSegments(field, quorbin::ensureSignedDistance, progress);
}

bool distanceByBruteForce(FullLevelSet2D& field, const Progress& progress) {
    return distanceToSegments(field, quorbin::ensureSignedDistanceBrute, progress);
}

bool hasEqualSpacings(const FullLevelSet2D& field) { return field.getXSpace() == field.getYSpace(); }

}  // namespace quorbin::fields
