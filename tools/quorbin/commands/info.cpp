#include <algorithm>
#include <cmath>
#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "fields/band.h"
#include "fields/label_mesh.h"
#include "io/format.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

std::ptrdiff_t countInside(const double* values, std::size_t count) {
    return std::count_if(values, values + count, [](double value) { return value <= 0; });
}

double partOf(std::ptrdiff_t some, std::size_t all) {
    return static_cast<double>(some) / static_cast<double>(all);
}

double partInside(const FieldRows& rows) {
    std::vector<double> row(static_cast<std::size_t>(rows.width));
    std::ptrdiff_t inside = 0;
    for (int y = 0; y < rows.height; ++y) {
        rows.read(y, row.data());
        inside += countInside(row.data(), row.size());
    }
    return partOf(inside, row.size() * static_cast<std::size_t>(rows.height));
}

/// Zeros where the spacings do not suit a band, or the outline is too long for one.
struct BandSize {
    int points = 0;
    double width = 0;  ///< in cells
};

BandSize bandAround(const FullLevelSet3D& levelSet, double area) {
    if (!suitsABand({levelSet.getXSpace(), levelSet.getYSpace(), levelSet.getZSpace()})) return {};
    FastLevelSet3D band = quorbin::bandOf(levelSet);
    return {band.size(), area > 0 ? band.size() / area : 0};
}

/// A band with the corners of the cells that the outline crosses; none where they are more than it is for.
FastLevelSet2D cornersOf(const FieldRows& rows) {
    constexpr int kMostCells = 1 << 21;
    int cells = 0;
    // A line of samples without any cell gives the band its spacings, and the buckets of so large a picture.
    FullLevelSet2D line;
    line.init(rows.width + rows.height - 1, 1, rows.xSpace, rows.ySpace);
    FastLevelSet2D band = quorbin::bandOf(line);
    const auto width = static_cast<std::size_t>(rows.width);
    std::vector<double> lower(width), upper(width);
    rows.read(0, lower.data());
    for (int y = 0; y + 1 < rows.height; ++y) {
        rows.read(y + 1, upper.data());
        for (std::size_t x = 0; x + 1 < width; ++x) {
            const double corners[] = {lower[x], lower[x + 1], upper[x + 1], upper[x]};
            const auto isInside = [](double value) { return value <= 0; };
            if (std::all_of(corners, corners + 4, isInside) || std::none_of(corners, corners + 4, isInside))
                continue;
            if (++cells > kMostCells) return {};
            const int left = static_cast<int>(x);
            band(left, y) = corners[0];
            band(left + 1, y) = corners[1];
            band(left + 1, y + 1) = corners[2];
            band(left, y + 1) = corners[3];
        }
        lower.swap(upper);
    }
    return band;
}

BandSize bandAround(const FieldRows& rows) {
    if (!suitsABand({rows.xSpace, rows.ySpace})) return {};
    FastLevelSet2D band = cornersOf(rows);
    std::vector<brin::Vec2<double>> points;
    std::vector<std::pair<int, int>> segments;
    band.getLinesUnique(points, segments);
    double around = 0;
    for (const auto& [start, end] : segments) {
        const auto along = points[static_cast<std::size_t>(end)] - points[static_cast<std::size_t>(start)];
        around += std::hypot(along.x, along.y);
    }
    if (segments.empty()) return {};
    band.ensureSignedDistanceFMM();
    return {band.size(), around > 0 ? band.size() / around : 0};
}

struct Info : FieldCommand {
    Info() { needsSamples = true; }

    void run() const { isGivenVolume() ? ofVolume() : ofPicture(); }

 private:
    void ofPicture() const {
        PackedPicture picture;
        std::string note;
        const FieldRows rows = readRows(picture, note, false);
        const io::Image& raster = picture.image;
        const Statistics known = statisticsOf(samplesOf(picture.rows));
        const double inside = partInside(rows);
        std::size_t polygons = 0;
        {
            Progress progress(!quiet);
            outlineOf(rows, false, 0, progress.function())
                .visit([&](Polygon&& region) { forEachRing(region, [&](const Ring&) { ++polygons; }); },
                       [](Ring&&) {});
        }
        const BandSize band = bandAround(rows);
        const double hx = rows.xSpace, hy = rows.ySpace;
        addStatistics(known, inside);
        record->add("polygons", polygons);
        record->add("band", Json{{"points", band.points}, {"width", band.width}});
        report("{}: {} {}, {} × {} points, spacing {} × {}", input, raster.format,
               raster.isField ? "field" : "picture", raster.width, raster.height, hx, hy);
        reportNotes(raster);
        reportStatistics(known, note, "outline");
        report("inside   {:.1f} % of the points, {}", 100 * inside, counted(polygons, "polygon"));
        if (band.points > 0)
            detail("band     {} around the outline, {:.1f} cells wide",
                   counted(static_cast<std::size_t>(band.points), "point"), band.width);
    }

    void ofVolume() const {
        FullLevelSet3D levelSet;
        std::string note;
        const io::Image volume = read(levelSet, note);
        const Statistics known = statisticsOf(samplesOf(volume.samples));
        const double inside =
            partOf(countInside(levelSet.data(), volume.samples.size()), volume.samples.size());
        MeshDocument mesh;
        auto& [vertices, normals, triangles] = mesh;
        if (field.label)
            mesh = meshOfLabel(volume.samples, levelSet, *field.label, true);
        else
            quorbin::getTrianglesCapped(levelSet, vertices, normals, triangles);
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace(), hz = levelSet.getZSpace();
        const double area = quorbin::surfaceArea(vertices, triangles, hx, hy, hz);
        const double enclosed = quorbin::enclosedVolume(vertices, triangles, hx, hy, hz);
        const BandSize band = bandAround(levelSet, quorbin::surfaceArea(vertices, triangles));
        addStatistics(known, inside);
        record->add("surface", Json{{"triangles", triangles.size()}, {"area", area}, {"volume", enclosed}});
        record->add("band", Json{{"points", band.points}, {"width", band.width}});
        report("{}: {} {}, {} × {} × {} points, spacing {} × {} × {}{}", input, volume.format,
               volume.isField ? "field" : "volume", volume.width, volume.height, volume.depth, hx, hy, hz,
               volume.placement.affine ? ", placed by a matrix" : "");
        reportStatistics(known, note, "surface");
        report("inside   {:.1f} % of the points", 100 * inside);
        detail("closed   {}, area {:.7g}, volume {:.7g} in units of the spacing",
               counted(triangles.size(), "triangle"), area, enclosed);
        if (band.points > 0)
            detail("band     {} around the surface, {:.1f} cells wide",
                   counted(static_cast<std::size_t>(band.points), "point"), band.width);
    }

    void addStatistics(const Statistics& known, double inside) const {
        record->add("lowest", known.lowest);
        record->add("highest", known.highest);
        record->add("mean", known.mean);
        record->add("inside", inside);
    }

    void reportStatistics(const Statistics& known, const std::string& note, const char* what) const {
        detail("values   {} to {}, mean {:.6g}", known.lowest, known.highest, known.mean);
        if (!note.empty()) detail("{}  {}", what, note);
    }

    /// A line that one of many inputs does not get.
    template <class... Args>
    void detail(fmt::format_string<Args...> line, Args&&... args) const {
        if (!batch->hasMany) report(line, std::forward<Args>(args)...);
    }
};

}  // namespace

void addInfo(CLI::App& app) {
    auto info = std::make_shared<Info>();
    CLI::App& command =
        addCommand(app, "info", "info photo.png",
                   "Says what a file holds and what its outline, or the surface in a volume, would be.",
                   [info] { runEach(*info); });
    info->addInput(command);
    info->addVolume(command);
}

}  // namespace quorbin::tool
