#include <cmath>

#include "progress_support.h"
#include "quorbin3d/band_support.h"

namespace {

using quorbin::Progress;

Bits bitsOf(const FullLevelSet3D& grid) { return bits(grid); }
Bits bitsOf(const FastLevelSet3D& band) { return contentOf(band.points()).values; }
Bits bitsOf(const quorbin::Figures3D& figures) { return bitsOfNumbers(&figures, 1); }
Bits bitsOf(const quorbin::Comparison& comparison) { return bitsOfNumbers(&comparison, 1); }
Bits bitsOf(const std::vector<quorbin::Sample3D>& samples) {
    return bitsOfNumbers(samples.data(), samples.size());
}
Bits bitsOf(const std::vector<quorbin::Piece3D>& pieces) {
    Bits all;
    for (const quorbin::Piece3D& piece : pieces)
        for (const std::uint64_t word : bitsOf(piece.figures)) all.push_back(word);
    return all;
}
Bits bitsOf(const quorbin::Mesh& mesh) {
    Bits all = bits(mesh.vertices);
    for (const std::uint64_t word : bits(mesh.normals)) all.push_back(word);
    for (const gpoint3& t : mesh.triangles)
        for (const int corner : {t.first, t.second, t.third})
            all.push_back(static_cast<std::uint64_t>(corner));
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

TEST(VolumeProgress, EndsEveryLongOperationOnGridsAndBands) {
    const auto wave = [](double x, double y, double z) {
        return std::sin(x / 5) + std::sin(y / 4) + std::sin(z / 6) - 0.3;
    };
    FullLevelSet3D a, b, mask;
    fill(a, {50, 45, 40}, wave);
    fill(b, {50, 45, 40}, [&](int x, int y, int z) { return wave(x + 2, y - 1, z); });
    fill(mask, {50, 45, 40}, [&](int x, int y, int z) { return wave(x, y, z) <= 0 ? -0.5 : 0.5; });
    const FastLevelSet3D band = quorbin::bandOf(a), other = quorbin::bandOf(b);
    std::vector<brin::Vec3<double>> points;
    for (int i = 0; i < 3000; ++i) points.emplace_back(i % 49, i % 44, i * 0.013);
    const auto flows = [](const auto& input, quorbin::CurvatureFlowOptions options) {
        return [&input, options](const Progress& p) {
            return inPlace(input, [&](auto& levelSet) {
                auto watched = options;
                watched.progress = p;
                return !quorbin::curvatureFlow(levelSet, 1, watched).isEnded;
            });
        };
    };
    quorbin::CurvatureFlowOptions explicitly, large, plain;
    explicitly.steps = quorbin::CurvatureFlowOptions::Steps::kExplicit;
    explicitly.keepsSize = true;
    explicitly.noiseRadius = 1;
    large.steps = quorbin::CurvatureFlowOptions::Steps::kLarge;
    const auto reinitialised = [](const auto& input) {
        return [&input](const Progress& p) {
            return inPlace(input, [&](auto& levelSet) { return quorbin::reinitialize(levelSet, {0, p}); });
        };
    };
    const LongOperation operations[] = {
        {"unite", [&](const Progress& p) { return bitsOf(quorbin::unite(a, b, p)); }},
        {"intersect", [&](const Progress& p) { return bitsOf(quorbin::intersect(a, b, p)); }},
        {"subtract", [&](const Progress& p) { return bitsOf(quorbin::subtract(a, b, p)); }},
        {"complement", [&](const Progress& p) { return bitsOf(quorbin::complement(a, p)); }},
        {"offset", [&](const Progress& p) { return bitsOf(quorbin::offset(a, 2, p)); }},
        {"opened", [&](const Progress& p) { return bitsOf(quorbin::opened(a, 1, p)); }},
        {"closed", [&](const Progress& p) { return bitsOf(quorbin::closed(a, 1, p)); }},
        {"compare", [&](const Progress& p) { return bitsOf(quorbin::compare(a, b, p)); }},
        {"measure", [&](const Progress& p) { return bitsOf(quorbin::measure(a, p)); }},
        {"pieces", [&](const Progress& p) { return bitsOf(quorbin::pieces(a, p)); }},
        {"largestPieces", [&](const Progress& p) { return bitsOf(quorbin::largestPieces(a, 1, p)); }},
        {"holes", [&](const Progress& p) { return bitsOf(quorbin::withoutHolesBelow(a, 400, p)); }},
        {"sample", [&](const Progress& p) { return bitsOf(quorbin::sample(a, points, p)); }},
        {"mesh", [&](const Progress& p) { return bitsOf(quorbin::mesh(a, {}, p)); }},
        {"capped mesh", [&](const Progress& p) { return bitsOf(quorbin::mesh(a, {true}, p)); }},
        {"reinitialize", reinitialised(a)},
        {"fast marching",
         [&](const Progress& p) {
             return inPlace(a, [&](auto& grid) { return quorbin::ensureSignedDistanceFMM(grid, p); });
         }},
        {"smoothMask",
         [&](const Progress& p) {
             return inPlace(mask, [&](auto& grid) { return quorbin::smoothMask(grid, {true, p}); });
         }},
        {"explicit flow", flows(a, explicitly)},
        {"large flow", flows(a, large)},
        {"unite bands", [&](const Progress& p) { return bitsOf(quorbin::unite(band, other, 0, p)); }},
        {"intersect bands", [&](const Progress& p) { return bitsOf(quorbin::intersect(band, other, 0, p)); }},
        {"subtract bands", [&](const Progress& p) { return bitsOf(quorbin::subtract(band, other, 0, p)); }},
        {"complement of a band", [&](const Progress& p) { return bitsOf(quorbin::complement(band, 0, p)); }},
        {"offset of a band", [&](const Progress& p) { return bitsOf(quorbin::offset(band, 1, p)); }},
        {"opened band", [&](const Progress& p) { return bitsOf(quorbin::opened(band, 1, p)); }},
        {"closed band", [&](const Progress& p) { return bitsOf(quorbin::closed(band, 1, p)); }},
        {"compare bands", [&](const Progress& p) { return bitsOf(quorbin::compare(band, other, p)); }},
        {"measure a band", [&](const Progress& p) { return bitsOf(quorbin::measure(band, p)); }},
        {"sample a band", [&](const Progress& p) { return bitsOf(quorbin::sample(band, points, p)); }},
        {"mesh of a band", [&](const Progress& p) { return bitsOf(quorbin::mesh(band, p)); }},
        {"reinitialize a band", reinitialised(band)},
        {"flow of a band", flows(band, plain)}};
    for (const LongOperation& operation : operations)
        expectEndedAndWatched(operation, [&] {
            Bits all = bits(a);
            for (const Bits& more : {bits(b), bits(mask), bitsOf(band), bitsOf(other)})
                all.insert(all.end(), more.begin(), more.end());
            return all;
        });
}

}  // namespace
