#pragma once

#include <gtest/gtest.h>

#include "quorbin2d/dense_support.h"

/// Any subclass of the band: nothing is overridden, and yet the library must read it through its slots.
struct SlowBand : FastLevelSet2D {};

/// Makes a band, of any subclass, of a dense grid.
inline void assignBandOf(FastLevelSet2D& band, FullLevelSet2D& grid, bool reinitialized) {
    band = quorbin::bandOf(grid, reinitialized);
}

/// Points and values in the order of the hash, values as bits.
struct BandContent {
    std::vector<std::pair<int, int>> points;
    std::vector<std::uint64_t> values;
    bool operator==(const BandContent& other) const {
        return points == other.points && values == other.values;
    }
};

inline BandContent contentOf(const PointHash<double>& hash) {
    BandContent content;
    for (const auto& bucket : hash.buckets)
        for (const auto& entry : bucket) {
            content.points.emplace_back(entry.x, entry.y);
            content.values.push_back(bits(&entry.value, 1).front());
        }
    return content;
}

/// Calls check(band, slow) with the same band in both: from random fields and smooth ones, of many sizes and
/// spacings, reinitialised or not, with gaps.
template <class Check>
void onBandPairs(Check check) {
    std::mt19937 random(11);
    const std::pair<double, double> spacings[] = {{1, 1}, {0.5, 2}, {0.7, 1.3}, {3, 0.3}};
    for (const int size : {2, 3, 7, 16, 40})
        for (const auto& [hx, hy] : spacings)
            for (const int kind : {0, 1, 2, 3}) {
                FullLevelSet2D grid;
                if (kind < 2)
                    fillRandom(grid, size, size + 1, random, kind == 0, hx, hy);
                else
                    fill(
                        grid, size, size,
                        [=](int x, int y) {
                            return std::hypot(x - 0.4 * size, y - 0.55 * size) - 0.3 * size;
                        },
                        hx, hy);
                FastLevelSet2D band;
                SlowBand slow;
                for (FastLevelSet2D* one : {&band, static_cast<FastLevelSet2D*>(&slow)}) {
                    assignBandOf(*one, grid, kind == 3);
                    for (int i = 0; i < 3; ++i) (*one)(size + 3 * i, -2 - i) = i - 1;  // scattered points
                }
                check(band, slow);
            }
}
