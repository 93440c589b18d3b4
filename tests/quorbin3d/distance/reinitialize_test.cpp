#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin3d/band_support.h"

namespace {

template <class Volume>
double enclosed(const Volume& field) {
    return quorbin::enclosedVolume(quorbin::mesh(field));
}

/// Mean error where the true distance from a ball's surface is below three samples, in samples.
double meanErrorNear(int n, double perStretch) {
    const double radius = 0.3 * n, x0 = 0.5 * n + 0.37, y0 = 0.5 * n - 0.21, z0 = 0.5 * n + 0.11;
    const auto squared = [&](int x, int y, int z) {
        const double dz = z * perStretch - z0;
        return (x - x0) * (x - x0) + (y - y0) * (y - y0) + dz * dz;
    };
    FullLevelSet3D field;
    const Size3D size{n, n, static_cast<int>(n / perStretch)};
    fill(
        field, size, [&](int x, int y, int z) { return (squared(x, y, z) - radius * radius) / (2 * radius); },
        1, 1, perStretch);
    quorbin::reinitialize(field);
    double sum = 0;
    int count = 0;
    for (int z = 0; z < size.depth; ++z)
        for (int y = 0; y < n; ++y)
            for (int x = 0; x < n; ++x) {
                const double distance = std::sqrt(squared(x, y, z)) - radius;
                if (std::abs(distance) >= 3 * perStretch) continue;
                sum += std::abs(field.get(x, y, z) - distance);
                ++count;
            }
    return sum / count;
}

TEST(ReinitializeVolume, IsOfThirdOrderBesideTheSurface) {
    for (const double stretch : {1.0, 2.0}) {
        const double coarse = meanErrorNear(24, stretch), fine = meanErrorNear(48, stretch);
        EXPECT_LT(coarse, stretch == 1 ? 1e-3 : 0.05);
        EXPECT_LT(fine, coarse / 3.5) << stretch;  // in samples: one order less than in world units
    }
}

TEST(ReinitializeVolume, LeavesABallWhereItIs) {
    FullLevelSet3D field;
    fill(field, {48, 48, 48}, [](int x, int y, int z) {
        return std::sqrt((x - 24.37) * (x - 24.37) + (y - 23.79) * (y - 23.79) + (z - 24.11) * (z - 24.11)) -
               15;
    });
    const double before = enclosed(field);
    FastLevelSet3D band = quorbin::bandOf(field, false);
    for (int i = 0; i < 20; ++i) {
        quorbin::reinitialize(field);
        quorbin::reinitialize(band);
    }
    EXPECT_NEAR(enclosed(field) / before, 1, 3e-5);
    EXPECT_NEAR(enclosed(band) / before, 1, 1e-4);
}

TEST(ReinitializeVolume, KeepsRodsOfTwoSamples) {
    for (const bool isDiagonal : {false, true})
        for (const bool isMask : {false, true}) {
            FullLevelSet3D field, before;
            fill(field, {32, 32, 32}, [&](int x, int y, int z) {
                const double half = std::sqrt(0.5);
                const double across = isDiagonal ? (x - y) * half + 0.01 : x - 15.5;
                const double along = isDiagonal ? (x + y - 31) * half : y - 15.5;
                const double u = std::abs(across) - 1, v = std::abs(along) - 11, w = std::abs(z - 15.5) - 1;
                const double outside = std::hypot(std::max(u, 0.0), std::max(v, 0.0), std::max(w, 0.0));
                const double distance = outside + std::min(std::max({u, v, w}), 0.0);
                return isMask ? (distance <= 0 ? -0.5 : 0.5) : distance;
            });
            before = field;
            quorbin::reinitialize(field);
            const double first = enclosed(field);
            EXPECT_NEAR(first / enclosed(before), 1, 0.02);
            for (int i = 1; i < 50; ++i) quorbin::reinitialize(field);
            EXPECT_NEAR(enclosed(field) / first, 1, 1e-4);
            for (int i = 0; i < 32 * 32 * 32; ++i) ASSERT_EQ(field.data()[i] <= 0, before.data()[i] <= 0);
        }
}

TEST(ReinitializeVolume, SmallAndRandomGridsAndBandsKeepTheirSides) {
    onVolumePairs([](FullLevelSet3D& field, SlowVolume& before) {
        try {
            quorbin::reinitialize(field);
        } catch (const quorbin::NoInterface&) {
            EXPECT_EQ(bits(field), bits(before));
            return;
        }
        for (int z = 0; z < field.getDepth(); ++z)
            for (int y = 0; y < field.getHeight(); ++y)
                for (int x = 0; x < field.getWidth(); ++x) {
                    ASSERT_TRUE(std::isfinite(field.get(x, y, z)));
                    ASSERT_EQ(field.get(x, y, z) <= 0, before.get(x, y, z) <= 0);
                }
    });
    onVolumeBandPairs([](FastLevelSet3D& band, SlowBand3D& before) {
        try {
            quorbin::reinitialize(band);
        } catch (const quorbin::NoInterface&) {
            EXPECT_TRUE(contentOf(band.points()) == contentOf(before.points()));
            return;
        }
        for (const auto& bucket : band.points().buckets)
            for (const auto& entry : bucket) {
                ASSERT_TRUE(std::isfinite(entry.value));
                if (!before.have(entry.x, entry.y, entry.z)) continue;
                ASSERT_EQ(entry.value <= 0, before.get(entry.x, entry.y, entry.z) <= 0);
            }
    });
}

}  // namespace
