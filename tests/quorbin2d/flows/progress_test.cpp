#include <cmath>

#include "progress_support.h"
#include "quorbin2d/band_support.h"

namespace {

using quorbin::Progress;

Bits bitsOf(const FullLevelSet2D& grid) { return bits(grid); }
Bits bitsOf(const FastLevelSet2D& band) { return contentOf(band.points()).values; }
Bits bitsOf(const quorbin::Figures2D& figures) { return bitsOfNumbers(&figures, 1); }
Bits bitsOf(const quorbin::Comparison& comparison) { return bitsOfNumbers(&comparison, 1); }
Bits bitsOf(const std::vector<quorbin::Sample2D>& samples) {
    return bitsOfNumbers(samples.data(), samples.size());
}
Bits bitsOf(const std::vector<quorbin::Piece2D>& pieces) {
    Bits all;
    for (const quorbin::Piece2D& piece : pieces)
        for (const std::uint64_t word : bitsOf(piece.figures)) all.push_back(word);
    return all;
}
Bits bitsOf(const std::vector<quorbin::Polygon>& polygons) {
    Bits all;
    const auto add = [&](const quorbin::Ring& ring) {
        for (const std::uint64_t word : bits(ring)) all.push_back(word);
    };
    for (const quorbin::Polygon& polygon : polygons) {
        add(polygon.outline);
        for (const quorbin::Ring& hole : polygon.holes) add(hole);
    }
    return all;
}
Bits bitsOf(const quorbin::OpenContours& open) {
    Bits all = bitsOf(open.regions);
    for (const quorbin::Ring& line : open.lines)
        for (const std::uint64_t word : bits(line)) all.push_back(word);
    return all;
}

template <class Result>
std::optional<Bits> bitsOf(const std::optional<Result>& result) {
    return result ? std::optional<Bits>(bitsOf(*result)) : std::nullopt;
}

/// Of work(copy), which returns whether it came to its end.
template <class LevelSet, class Work>
std::optional<Bits> inPlace(const LevelSet& input, const Work& work) {
    LevelSet copy;
    copy = input;
    bool isDone = false;
    try {
        isDone = work(copy);
    } catch (int) {
        EXPECT_EQ(bitsOf(copy), bitsOf(input));
        throw;
    }
    if (isDone) return bitsOf(copy);
    EXPECT_EQ(bitsOf(copy), bitsOf(input));
    return std::nullopt;
}

TEST(Progress, EndsEveryLongOperationOnGridsAndTellsOfItInOrder) {
    const auto wave = [](double x, double y) { return std::sin(x / 9) + std::sin(y / 8) - 0.3; };
    FullLevelSet2D a, b, mask;
    fill(a, 300, 200, wave);
    fill(b, 300, 200, [&](int x, int y) { return wave(x + 4, y - 3); });
    fill(mask, 300, 200, [&](int x, int y) { return wave(x, y) <= 0 ? -0.5 : 0.5; });
    const auto outlines = quorbin::contours(a);
    Points points;
    for (int i = 0; i < 5000; ++i) points.emplace_back(i % 300, i * 0.037);
    const auto flows = [&](quorbin::CurvatureFlowOptions options) {
        return [&, options](const Progress& p) {
            return inPlace(a, [&](FullLevelSet2D& grid) {
                auto watched = options;
                watched.progress = p;
                return !quorbin::curvatureFlow(grid, 3, watched).isEnded;
            });
        };
    };
    quorbin::CurvatureFlowOptions explicitly, large, noise;
    explicitly.steps = quorbin::CurvatureFlowOptions::Steps::kExplicit;
    explicitly.keepsSize = explicitly.keepsSides = true;
    large.steps = quorbin::CurvatureFlowOptions::Steps::kLarge;
    noise.noiseRadius = 2;
    const LongOperation operations[] = {
        {"unite", [&](const Progress& p) { return bitsOf(quorbin::unite(a, b, p)); }},
        {"intersect", [&](const Progress& p) { return bitsOf(quorbin::intersect(a, b, p)); }},
        {"subtract", [&](const Progress& p) { return bitsOf(quorbin::subtract(a, b, p)); }},
        {"complement", [&](const Progress& p) { return bitsOf(quorbin::complement(a, p)); }},
        {"offset", [&](const Progress& p) { return bitsOf(quorbin::offset(a, 2, p)); }},
        {"opened", [&](const Progress& p) { return bitsOf(quorbin::opened(a, 2, p)); }},
        {"closed", [&](const Progress& p) { return bitsOf(quorbin::closed(a, 2, p)); }},
        {"compare", [&](const Progress& p) { return bitsOf(quorbin::compare(a, b, p)); }},
        {"measure", [&](const Progress& p) { return bitsOf(quorbin::measure(a, p)); }},
        {"pieces", [&](const Progress& p) { return bitsOf(quorbin::pieces(a, p)); }},
        {"largestPieces", [&](const Progress& p) { return bitsOf(quorbin::largestPieces(a, 2, p)); }},
        {"holes", [&](const Progress& p) { return bitsOf(quorbin::withoutHolesBelow(a, 400, p)); }},
        {"sample", [&](const Progress& p) { return bitsOf(quorbin::sample(a, points, p)); }},
        {"contours", [&](const Progress& p) { return bitsOf(quorbin::contours(a, p)); }},
        {"openContours", [&](const Progress& p) { return bitsOf(quorbin::openContours(a, p)); }},
        {"simplified", [&](const Progress& p) { return bitsOf(quorbin::simplified(outlines, 0.3, p)); }},
        {"reinitialize",
         [&](const Progress& p) {
             return inPlace(a, [&](auto& grid) { return quorbin::reinitialize(grid, {0, p}); });
         }},
        {"fast marching",
         [&](const Progress& p) {
             return inPlace(a, [&](auto& grid) { return quorbin::ensureSignedDistanceFMM(grid, p); });
         }},
        {"sweeps",
         [&](const Progress& p) {
             return inPlace(a, [&](auto& grid) { return quorbin::ensureSignedDistance(grid, p); });
         }},
        {"brute force",
         [&](const Progress& p) {
             return inPlace(a, [&](auto& grid) { return quorbin::ensureSignedDistanceBrute(grid, p); });
         }},
        {"smoothMask",
         [&](const Progress& p) {
             return inPlace(mask, [&](auto& grid) { return quorbin::smoothMask(grid, {true, p}); });
         }},
        {"explicit flow", flows(explicitly)},
        {"large flow", flows(large)},
        {"flow of noise", flows(noise)}};
    for (const LongOperation& operation : operations)
        expectEndedAndWatched(operation, [&] {
            Bits all = bits(a);
            for (const auto* one : {&b, &mask})
                for (const std::uint64_t word : bits(*one)) all.push_back(word);
            return all;
        });
}

TEST(Progress, EndsEveryLongOperationOnBands) {
    const auto wave = [](double x, double y) { return std::sin(x / 9) + std::sin(y / 8) - 0.3; };
    FullLevelSet2D grid;
    fill(grid, 600, 400, wave);
    const FastLevelSet2D a = quorbin::bandOf(grid);
    fill(grid, 600, 400, [&](int x, int y) { return wave(x + 4, y - 3); });
    const FastLevelSet2D b = quorbin::bandOf(grid);
    Points points;
    for (int i = 0; i < 5000; ++i) points.emplace_back(i % 300, i * 0.037);
    const LongOperation operations[] = {
        {"unite", [&](const Progress& p) { return bitsOf(quorbin::unite(a, b, 0, p)); }},
        {"intersect", [&](const Progress& p) { return bitsOf(quorbin::intersect(a, b, 0, p)); }},
        {"subtract", [&](const Progress& p) { return bitsOf(quorbin::subtract(a, b, 0, p)); }},
        {"complement", [&](const Progress& p) { return bitsOf(quorbin::complement(a, 0, p)); }},
        {"offset", [&](const Progress& p) { return bitsOf(quorbin::offset(a, 2, p)); }},
        {"opened", [&](const Progress& p) { return bitsOf(quorbin::opened(a, 2, p)); }},
        {"closed", [&](const Progress& p) { return bitsOf(quorbin::closed(a, 2, p)); }},
        {"compare", [&](const Progress& p) { return bitsOf(quorbin::compare(a, b, p)); }},
        {"measure", [&](const Progress& p) { return bitsOf(quorbin::measure(a, p)); }},
        {"sample", [&](const Progress& p) { return bitsOf(quorbin::sample(a, points, p)); }},
        {"contours", [&](const Progress& p) { return bitsOf(quorbin::contours(a, p)); }},
        {"reinitialize",
         [&](const Progress& p) {
             return inPlace(a, [&](auto& band) { return quorbin::reinitialize(band, {0, p}); });
         }},
        {"curvature flow", [&](const Progress& p) {
             return inPlace(a, [&](auto& band) {
                 quorbin::CurvatureFlowOptions options;
                 options.progress = p;
                 return !quorbin::curvatureFlow(band, 3, options).isEnded;
             });
         }}};
    for (const LongOperation& operation : operations)
        expectEndedAndWatched(operation, [&] {
            Bits all = bitsOf(a);
            for (const std::uint64_t word : bitsOf(b)) all.push_back(word);
            return all;
        });
}

}  // namespace
