#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fields/distance.h"
#include "fields/from_samples.h"
#include "fields/resampling.h"
#include "fields/smoothing.h"

using namespace quorbin::fields;
namespace io = quorbin::io;

namespace {

std::vector<std::uint64_t> bitsOf(const double* values, std::size_t count) {
    std::vector<std::uint64_t> bits(count);
    std::memcpy(bits.data(), values, count * sizeof(double));
    return bits;
}

/// Ends an operation at each of its first tellings in turn, by false and by an exception: the field stays.
template <class Grid, class Operation>
void expectUnchangedWhenEnded(const Grid& start, Operation operation) {
    const auto before = bitsOf(start.data(), io::pointsOf(start));
    Grid field;
    for (int end = 1; end <= 3; ++end) {
        int told = 0;
        field = start;
        EXPECT_FALSE(operation(field, [&](int, int) { return ++told < end; }));
        EXPECT_EQ(told, end);
        EXPECT_EQ(bitsOf(field.data(), io::pointsOf(field)), before);
        EXPECT_THROW(operation(field, [](int, int) -> bool { throw 1; }), int);
        EXPECT_EQ(bitsOf(field.data(), io::pointsOf(field)), before);
    }
    EXPECT_TRUE(operation(field, [](int, int) { return true; }));
    EXPECT_NE(bitsOf(field.data(), io::pointsOf(field)), before);
}

TEST(LongOperations, ThatAreEndedLeaveTheFieldAsItWas) {
    FullLevelSet2D disc;
    disc.init(400, 350, 1, 1);
    for (int y = 0; y < 350; ++y)
        for (int x = 0; x < 400; ++x) disc(x, y) = 3 * (std::hypot(x - 50.2, y - 60.1) - 30);
    for (const DistanceMethod<FullLevelSet2D> method :
         {static_cast<DistanceMethod<FullLevelSet2D>>(distanceByProjection), distanceBySegments,
          distanceByBruteForce})
        expectUnchangedWhenEnded(disc, method);
    FullLevelSet3D ball;
    ball.init(60, 50, 60, 1, 1, 1);
    for (int z = 0; z < 60; ++z)
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 60; ++x) ball(x, y, z) = 3 * (std::hypot(x - 30.2, y - 25, z - 30) - 18);
    expectUnchangedWhenEnded(ball, static_cast<DistanceMethod<FullLevelSet3D>>(distanceByMarching));
    Lattice finer{{77, 61, 80}, {0.9, 0.8, 0.7}};
    io::Placement placement;
    expectUnchangedWhenEnded(ball, [&](FullLevelSet3D& field, const quorbin::Progress& progress) {
        return resample(field, finer, placement, progress);
    });
    EXPECT_EQ(placement.spacing, finer.spacing);
    for (const bool onBand : {false, true}) {
        const auto smoothly = [&](auto& field, const quorbin::Progress& progress) {
            Smoothing smoothing;
            smoothing.time = 40 * explicitStep(field);
            smoothing.onBand = onBand;
            smoothing.flow.steps = quorbin::CurvatureFlowOptions::Steps::kExplicit;
            smoothing.flow.progress = progress;
            return !smooth(field, smoothing).isEnded;
        };
        expectUnchangedWhenEnded(disc, smoothly);
        expectUnchangedWhenEnded(ball, smoothly);
    }
}

TEST(PackedRows, GiveBackEveryValueToTheLastBit) {
    constexpr double kMax = std::numeric_limits<double>::max();
    const std::vector<std::vector<double>> rows = {{0, 1, 255},      {0, 256, 65535}, {-0.0, 1, 2},
                                                   {65536, -1, 0.5}, {0.1, 1, 2},     {kMax, -kMax, 5e-324}};
    io::PackedRows packed(3);
    for (const auto& row : rows) packed.add(row.data());
    std::size_t y = 0;
    packed.forEach([&](const double* row, std::size_t count) {
        EXPECT_EQ(bitsOf(row, count), bitsOf(rows[y].data(), 3));
        ++y;
    });
    EXPECT_EQ(y, rows.size());
}

TEST(FieldRows, AreThoseOfTheWholeFieldWhateverMakesIt) {
    std::mt19937 random(3);
    FieldOptions below, between, label;
    below.level = 3.5;
    below.insideAbove = false;
    between.between = {{2, 5}};
    label.label = 4;
    for (const FieldOptions& options : {FieldOptions(), below, between, label})
        for (const bool isField : {false, true}) {
            io::Image picture;
            io::setPictureSize(picture, 31, 17);
            picture.isField = isField;
            std::generate(picture.samples.begin(), picture.samples.end(),
                          [&] { return static_cast<double>(random() % 9); });
            FullLevelSet2D field;
            std::string note, noteOfRows;
            const std::optional<double> level = makeField(picture, options, field, note);
            const io::PackedPicture packed = io::packed(picture);
            quorbin::FieldRows rows;
            EXPECT_EQ(makeField(packed, options, rows, noteOfRows), level);
            EXPECT_EQ(noteOfRows, note);
            EXPECT_EQ(hasCrossing(rows), hasCrossing(field));
            std::vector<double> row(31);
            for (int y = 0; y < 17; ++y) {
                rows.read(y, row.data());
                EXPECT_EQ(bitsOf(row.data(), 31), bitsOf(field.data() + std::ptrdiff_t{31} * y, 31));
            }
        }
}

}  // namespace
