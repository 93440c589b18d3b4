#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include <quorbin2d.h>

/// Any subclass: nothing is overridden, and yet the library must read it through its slots.
struct SlowPath : FullLevelSet2D {
    using FullLevelSet2D::operator=;
};

using Points = std::vector<brin::Vec2<double>>;
using Segments = std::vector<std::pair<int, int>>;

template <class F>
void fill(FullLevelSet2D& grid, int width, int height, F f, double hx = 1.0, double hy = 1.0) {
    grid.init(width, height, hx, hy);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) grid(x, y) = f(x, y);
}

/// A field of uniform noise, or of small integers, among which there are many exact zeros and equal values.
inline void fillRandom(FullLevelSet2D& grid, int width, int height, std::mt19937& random, bool integers,
                       double hx = 1.0, double hy = 1.0) {
    std::uniform_real_distribution<double> real(-1.0, 1.0);
    std::uniform_int_distribution<int> integer(-2, 2);
    fill(
        grid, width, height, [&](int, int) { return integers ? integer(random) : real(random); }, hx, hy);
}

/// The values as bits, so that −0 differs from 0 and a not-a-number equals itself.
inline std::vector<std::uint64_t> bits(const double* values, std::size_t count) {
    std::vector<std::uint64_t> result(count);
    if (count > 0) std::memcpy(result.data(), values, count * sizeof(double));
    return result;
}
inline std::vector<std::uint64_t> bits(const FullLevelSet2D& grid) {
    return bits(grid.data(),
                static_cast<std::size_t>(grid.getWidth()) * static_cast<std::size_t>(grid.getHeight()));
}
inline std::vector<std::uint64_t> bits(const Points& points) {
    return bits(reinterpret_cast<const double*>(points.data()), 2 * points.size());
}

/// Calls check(dense, slow) with the same random field in both: many sizes, spacings and both kinds of
/// values.
template <class Check>
void onRandomPairs(Check check, int smallestSize = 1) {
    std::mt19937 random(7);
    const std::pair<double, double> spacings[] = {{1, 1}, {0.5, 2}, {0.7, 1.3}, {3, 0.01}};
    for (int width : {1, 2, 3, 8, 9, 17, 40})
        for (int height : {1, 2, 3, 5, 16, 33}) {
            if (width < smallestSize || height < smallestSize) continue;
            for (const auto& [hx, hy] : spacings)
                for (bool integers : {false, true}) {
                    FullLevelSet2D dense;
                    SlowPath slow;
                    fillRandom(dense, width, height, random, integers, hx, hy);
                    slow = dense;
                    check(dense, slow);
                }
        }
}
