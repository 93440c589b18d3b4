#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>
#include <quorbin.h>

#include "quorbin3d/band_support.h"

namespace {

using Steps = quorbin::CurvatureFlowOptions::Steps;

double ball(double x, double y, double z) {
    return std::sqrt((x - 20.37) * (x - 20.37) + (y - 19.79) * (y - 19.79) + (z - 20.11) * (z - 20.11)) - 13;
}

/// The square of the radius of a ball of the volume that a mesh encloses.
double squaredRadius(const quorbin::Mesh& mesh) {
    const double radius = std::cbrt(quorbin::enclosedVolume(mesh) * 0.75 / 3.14159265358979323846);
    return radius * radius;
}

TEST(CurvatureFlowOfVolumes, ABallLosesFourOfItsSquaredRadiusInUnitTime) {
    const double time = 20;
    for (const double stretch : {1.0, 2.0})
        for (const Steps steps : {Steps::kExplicit, Steps::kLarge}) {
            FullLevelSet3D field;
            fill(
                field, {40, 40, static_cast<int>(40 / stretch)},
                [&](int x, int y, int z) { return ball(x, y, z * stretch); }, 1, 1, stretch);
            quorbin::reinitialize(field);
            const double before = squaredRadius(quorbin::mesh(field));
            quorbin::CurvatureFlowOptions options;
            options.steps = steps;
            quorbin::curvatureFlow(field, time, options);
            const double excess = (before - squaredRadius(quorbin::mesh(field))) / (4 * time) - 1;
            EXPECT_LT(std::abs(excess), steps == Steps::kLarge ? 1e-2
                                        : stretch == 1         ? 1e-3
                                                               : 3e-3)
                << stretch;
        }
    FullLevelSet3D field;
    fill(field, {40, 40, 40}, ball);
    FastLevelSet3D band = quorbin::bandOf(field, false);
    quorbin::reinitialize(band);
    const double before = squaredRadius(quorbin::mesh(band));
    quorbin::curvatureFlow(band, time);
    EXPECT_NEAR((before - squaredRadius(quorbin::mesh(band))) / (4 * time), 1, 1.5e-3);
}

TEST(CurvatureFlowOfVolumes, ADumbbellBecomesTwoPieces) {
    FullLevelSet3D field;
    fill(field, {96, 32, 32}, [](int x, int y, int z) {
        const double across = std::hypot(y - 15.79, z - 16.11);
        const double left = std::hypot(x - 20.37, across) - 12, right = std::hypot(x - 75.37, across) - 12;
        const double neck = std::max(across - 5, std::abs(x - 47.87) - 27);
        return std::min({left, right, neck});
    });
    FastLevelSet3D band = quorbin::bandOf(field, false);
    const auto onGrid = quorbin::curvatureFlow(field, 20), onBand = quorbin::curvatureFlow(band, 20);
    EXPECT_FALSE(onGrid.hasVanished || onBand.hasVanished);
    for (const LevelSet3D* moved : {static_cast<LevelSet3D*>(&field), static_cast<LevelSet3D*>(&band)}) {
        EXPECT_LE(moved->get(20, 16, 16), 0);
        EXPECT_LE(moved->get(75, 16, 16), 0);
    }
    for (int y = 0; y < 32; ++y)
        for (int z = 0; z < 32; ++z) {
            EXPECT_GT(field.get(48, y, z), 0);
            EXPECT_FALSE(band.have(48, y, z) && band.get(48, y, z) <= 0);
        }
    for (int i = 0; i < 96 * 32 * 32; ++i) ASSERT_TRUE(std::isfinite(field.data()[i]));
}

TEST(SmoothMaskOfVolumes, GivesABallOfSamplesItsSurfaceBack) {
    FullLevelSet3D field;
    fill(field, {40, 40, 40}, [](int x, int y, int z) { return ball(x, y, z) <= 0 ? -0.5 : 0.5; });
    EXPECT_TRUE(quorbin::isMask(field));
    const double before = quorbin::enclosedVolume(quorbin::mesh(field));
    EXPECT_TRUE(quorbin::smoothMask(field));
    const quorbin::Mesh mesh = quorbin::mesh(field);
    EXPECT_NEAR(quorbin::enclosedVolume(mesh) / before, 1, 1e-3);
    double sum = 0;
    for (const auto& v : mesh.vertices) sum += std::abs(ball(v.x, v.y, v.z));
    EXPECT_LT(sum / static_cast<double>(mesh.vertices.size()), 0.1);
    EXPECT_NEAR(quorbin::surfaceArea(mesh) / (4 * 3.14159265358979323846 * 169), 1, 5e-3);  // raw: 7 % more
}

TEST(CurvatureFlowOfVolumes, KeepsTheVolumeOfACube) {
    FullLevelSet3D field;
    fill(field, {32, 32, 32}, [](int x, int y, int z) {
        return std::max({std::abs(x - 15.6), std::abs(y - 16.2), std::abs(z - 15.9)}) - 8.3;
    });
    quorbin::reinitialize(field);
    const double before = quorbin::enclosedVolume(quorbin::mesh(field));
    quorbin::CurvatureFlowOptions options;
    options.keepsSize = true;
    quorbin::curvatureFlow(field, 5, options);
    EXPECT_NEAR(quorbin::enclosedVolume(quorbin::mesh(field)) / before, 1, 1e-4);
}

}  // namespace
