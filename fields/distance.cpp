#include "distance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace quorbin::fields {

namespace {

std::size_t pointsOf(const FullLevelSet2D& field) {
    return static_cast<std::size_t>(field.getWidth()) * static_cast<std::size_t>(field.getHeight());
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

/// Progress is that of the march alone: the measuring tells none.
void distanceToSegments(FullLevelSet2D& field, void (FullLevelSet2D::*measure)(),
                        const ProgressFunction& progress) {
    const std::size_t count = pointsOf(field);
    // No distance that is measured reaches this one: it shows what has been left out.
    const double unreached = std::sqrt(2.0 * static_cast<double>(count));
    setFarFromCrossings(field, unreached);
    (field.*measure)();
    double* const value = field.data();
    const auto isUnreached = [=](double distance) { return std::abs(distance) >= unreached; };
    FullLevelSet2D marched;
    if (std::any_of(value, value + count, isUnreached)) {
        marched.init(field.getWidth(), field.getHeight(), 1.0, 1.0);
        std::copy_n(value, count, marched.data());
        distanceByMarching(marched, progress);
    }
    const double spacing = field.getXSpace();
    for (std::size_t i = 0; i < count; ++i)
        value[i] = spacing * (isUnreached(value[i]) ? marched.data()[i] : value[i]);
}

}  // namespace

void distanceByMarching(FullLevelSet2D& field, const ProgressFunction& progress) {
    quorbin::ensureSignedDistanceFMM(field, neverEnding(progress));
}

void distanceInVolume(FullLevelSet3D& field, const ProgressFunction& progress) {
    quorbin::ensureSignedDistanceFMM(field, neverEnding(progress));
}

void distanceBySegments(FullLevelSet2D& field, const ProgressFunction& progress) {
    distanceToSegments(field, &FullLevelSet2D::ensureSignedDistance, progress);
}

void distanceByBruteForce(FullLevelSet2D& field, const ProgressFunction& progress) {
    distanceToSegments(field, &FullLevelSet2D::ensureSignedDistanceBrute, progress);
}

bool hasEqualSpacings(const FullLevelSet2D& field) { return field.getXSpace() == field.getYSpace(); }

}  // namespace quorbin::fields
