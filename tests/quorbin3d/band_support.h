#pragma once

#include <array>

#include <gtest/gtest.h>

#include "quorbin3d/dense_support.h"

/// Any subclass of the band: nothing is overridden, and yet the library must read it through its slots.
struct SlowBand3D : FastLevelSet3D {};

/// Makes a band, of any subclass, of a dense grid.
inline void assignBandOf(FastLevelSet3D& band, const FullLevelSet3D& grid, bool reinitialized) {
    band = quorbin::bandOf(grid, reinitialized);
}

/// Points and values in the order of the hash, values as bits.
struct BandContent3D {
    std::vector<std::array<int, 3>> points;
    std::vector<std::uint64_t> values;
    bool operator==(const BandContent3D& other) const {
        return points == other.points && values == other.values;
    }
};

inline BandContent3D contentOf(const Point3Hash<double>& hash) {
    BandContent3D content;
    for (const auto& bucket : hash.buckets)
        for (const auto& entry : bucket) {
            content.points.push_back({entry.x, entry.y, entry.z});
            content.values.push_back(bits(&entry.value, 1).front());
        }
    return content;
}

/// Calls check(band, slow) with the same band in both: of noise, small integers and balls, many sizes and
/// spacings, reinitialised or not, with points scattered about.
template <class Check>
void onVolumeBandPairs(Check check) {
    int kind = 0;
    onVolumePairs([&](FullLevelSet3D& dense, SlowVolume&) {
        FastLevelSet3D band;
        SlowBand3D slow;
        const int size = dense.getWidth();
        for (FastLevelSet3D* one : {&band, static_cast<FastLevelSet3D*>(&slow)}) {
            assignBandOf(*one, dense, kind % 2 == 0);
            for (int i = 0; i < 3; ++i) (*one)(size + 3 * i, -2 - i, 5 * i) = i - 1;
        }
        ++kind;
        check(band, slow);
    });
}
