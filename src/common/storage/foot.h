#pragma once

#include <array>
#include <cstddef>

#include "common/vector.h"

namespace lset::detail {

/// A point of the interface, the foot of the perpendicular from a grid point, and how the interface runs on
/// from there: as the quadric with these principal directions and curvatures.
template <std::size_t dimensions>
struct Foot {
    Vector<dimensions> at;
    Vector<dimensions> normal;  // of length 1, towards larger values
    std::array<Vector<dimensions>, dimensions - 1> directions;
    std::array<double, dimensions - 1> curvatures;  // 1 / radius; positive where what is inside is convex
    double reach;   // how far the quadric is taken for the interface, along each direction and to both sides
    bool isEnd;     // whether the interface is known to stop there, at the edge of a band
    bool isSmooth;  // whether the interface is known to be one there; else it may have a corner anywhere
};

}  // namespace lset::detail
