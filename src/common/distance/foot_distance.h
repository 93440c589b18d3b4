#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "common/storage/foot.h"
#include "common/vector.h"

namespace lset::detail {

/// Distance of a point from the part of a foot's quadric within a reach, to fourth order in how far the
/// point's own foot is from this one. It is measured to a point of the quadric, so that it is never much too
/// small.
template <std::size_t dimensions>
double distanceTo(const Foot<dimensions>& foot, const Vector<dimensions>& p, double reach) {
    // Beyond the centre of curvature the foot that is sought is not the nearest point of the quadric.
    constexpr double kLeastScale = 0.25;
    const Vector<dimensions> r = difference(p, foot.at);
    const double along = dot(r, foot.normal);
    double across = along, squared = 0;
    for (std::size_t i = 0; i + 1 < dimensions; ++i) {
        const double t = dot(r, foot.directions[i]), curvature = foot.curvatures[i];
        const double scale = std::max(1 + curvature * along, kLeastScale);
        const double u = std::clamp(t / scale, -reach, reach);
        across += 0.5 * curvature * (u * u);
        squared += (t - u) * (t - u);
    }
    return std::sqrt(squared + across * across);
}

/// What distances may make of the values that they replace, away from the interface: keep those that can be
/// right, or know better – where a field is that of a square, say, and its distances are to be right beyond
/// the corners.
enum class OldValues { kTrusted, kForgotten };

/// Distance of a point from the nearest foot that is known. Where the interface may have a corner, a value
/// that can be the distance is kept.
template <std::size_t dimensions>
double distanceFrom(const Foot<dimensions>& foot, const Vector<dimensions>& p, double value) {
    if (foot.isSmooth) return distanceTo(foot, p, foot.reach);
    const double nearest = distanceTo(foot, p, foot.reach), farthest = lengthOf(difference(p, foot.at));
    if (!std::isfinite(value)) return 0.5 * (nearest + farthest);
    // The corner itself may be nearer than the feet around it.
    const double least = std::max(std::min(nearest, farthest - 0.5 * foot.reach), 0.0);
    return std::clamp(std::abs(value), least, farthest);
}

/// Directions of length 1 that are at right angles to the normal and to each other.
inline std::array<Vector<2>, 1> tangentsTo(const Vector<2>& normal) { return {{{-normal[1], normal[0]}}}; }
inline std::array<Vector<3>, 2> tangentsTo(const Vector<3>& n) {
    std::size_t least = 0;
    for (std::size_t i = 1; i < 3; ++i)
        if (std::abs(n[i]) < std::abs(n[least])) least = i;
    Vector<3> first = scaled(n, -n[least]);
    first[least] += 1;
    first = scaled(first, 1 / lengthOf(first));
    return {{first,
             {n[1] * first[2] - n[2] * first[1], n[2] * first[0] - n[0] * first[2],
              n[0] * first[1] - n[1] * first[0]}}};
}

/// Sets the principal directions and curvatures of the level set through a foot, whose normal is known, from
/// the second derivatives of the field, divided by the length of its gradient.
inline void setCurvatures(Foot<2>& foot, const Symmetric<2>& bending) {
    foot.directions = tangentsTo(foot.normal);
    foot.curvatures[0] = dot(foot.directions[0], product(bending, foot.directions[0]));
}
inline void setCurvatures(Foot<3>& foot, const Symmetric<3>& bending) {
    const auto [s, t] = tangentsTo(foot.normal);
    const Vector<3> alongS = product(bending, s), alongT = product(bending, t);
    const double a = dot(s, alongS), b = dot(t, alongS), c = dot(t, alongT);
    const double half = 0.5 * (a - c), root = std::sqrt(half * half + b * b);
    foot.curvatures = {0.5 * (a + c) + root, 0.5 * (a + c) - root};
    // The eigenvector of the larger one, by whichever formula does not cancel.
    const double x = half > 0 ? half + root : b, y = half > 0 ? b : root - half;
    const double length = std::sqrt(x * x + y * y);
    const double cosine = length > 0 ? x / length : 1, sine = length > 0 ? y / length : 0;
    foot.directions = {sum(scaled(s, cosine), sine, t), sum(scaled(t, cosine), -sine, s)};
}

}  // namespace lset::detail
