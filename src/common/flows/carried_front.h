#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/flows/tracing.h"

namespace lset::detail {

/// An interface as the points that it is made of: line segments in 2D, triangles in 3D.
template <class Point, std::size_t dimensions>
struct CarriedFront {
    std::vector<Point> points;
    std::vector<std::array<int, dimensions>> simplices;

    /// The front after a step. Where two joined points are further apart then than reach, their middle is
    /// carried along too.
    CarriedFront moved(const Tracing<Point>& tracing, double from, double to, int substeps,
                       double reach) const {
        CarriedFront result = *this;
        std::vector<Point> before = points;
        tracing.move(result.points.data(), result.points.size(), from, to, substeps);
        constexpr int kPasses = 40;  // each halves edges
        for (int pass = 0; pass < kPasses && result.split(before, reach); ++pass) {
            const std::size_t known = result.points.size();
            result.points.insert(result.points.end(), before.begin() + static_cast<std::ptrdiff_t>(known),
                                 before.end());
            tracing.move(result.points.data() + known, result.points.size() - known, from, to, substeps);
        }
        return result;
    }

 private:
    /// Splits simplices at the middle of their longest edge, if that is too long; the new points go to where
    /// all points were before. Returns whether there are any.
    bool split(std::vector<Point>& before, double reach) {
        std::unordered_map<std::uint64_t, int> middles;
        const auto middleOf = [&](int a, int b) {
            const auto [low, high] = std::minmax(a, b);
            const std::uint64_t key =
                static_cast<std::uint64_t>(low) << 32 | static_cast<std::uint32_t>(high);
            const auto [at, isNew] = middles.emplace(key, static_cast<int>(before.size()));
            if (isNew)
                before.push_back(0.5 *
                                 (before[static_cast<std::size_t>(a)] + before[static_cast<std::size_t>(b)]));
            return at->second;
        };
        const std::size_t count = simplices.size();
        for (std::size_t s = 0; s < count; ++s) {
            double longest = reach * reach;
            std::size_t first = dimensions, second = 0;
            for (std::size_t a = 0; a < dimensions; ++a)
                for (std::size_t b = a + 1; b < dimensions; ++b) {
                    const Point edge = points[static_cast<std::size_t>(simplices[s][a])] -
                                       points[static_cast<std::size_t>(simplices[s][b])];
                    if (!(dot(edge, edge) > longest)) continue;
                    longest = dot(edge, edge);
                    first = a;
                    second = b;
                }
            if (first == dimensions) continue;
            const int middle = middleOf(simplices[s][first], simplices[s][second]);
            auto other = simplices[s];
            other[first] = middle;
            simplices[s][second] = middle;
            simplices.push_back(other);
        }
        return before.size() > points.size();
    }
};

}  // namespace lset::detail
