#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/record.h"
#include "fields/band.h"
#include "fields/label_mesh.h"
#include "io/format.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

/// What is known of the samples of a file.
struct Statistics {
    double lowest, highest, mean, insidePart;
};

Statistics statisticsOf(const std::vector<double>& samples, const double* field) {
    const auto [low, high] = std::minmax_element(samples.begin(), samples.end());
    const auto count = static_cast<double>(samples.size());
    const auto inside = std::count_if(field, field + samples.size(), [](double value) { return value <= 0; });
    return {*low, *high, std::accumulate(samples.begin(), samples.end(), 0.0) / count,
            static_cast<double>(inside) / count};
}

/// Zeros where the spacings do not suit a band.
struct BandSize {
    int points = 0;
    double width = 0;  ///< in cells
};

BandSize bandAround(const FullLevelSet3D& levelSet, double area) {
    if (!suitsABand({levelSet.getXSpace(), levelSet.getYSpace(), levelSet.getZSpace()})) return {};
    FastLevelSet3D band = quorbin::bandOf(levelSet);
    return {band.size(), area > 0 ? band.size() / area : 0};
}

BandSize bandAround(FullLevelSet2D& levelSet) {
    if (!suitsABand({levelSet.getXSpace(), levelSet.getYSpace()})) return {};
    FastLevelSet2D band = quorbin::bandOf(levelSet);
    std::vector<brin::Vec2<double>> points;
    std::vector<std::pair<int, int>> segments;
    levelSet.getLinesUnique(points, segments);
    double around = 0;
    for (const auto& [start, end] : segments) {
        const auto along = points[static_cast<std::size_t>(end)] - points[static_cast<std::size_t>(start)];
        around += std::hypot(along.x, along.y);
    }
    return {band.size(), around > 0 ? band.size() / around : 0};
}

struct Info : FieldCommand {
    Info() { needsSamples = true; }

    void run() const { isGivenVolume() ? ofVolume() : ofPicture(); }

 private:
    void ofPicture() const {
        FullLevelSet2D levelSet;
        std::string note;
        const io::Image raster = read(levelSet, note);
        const Statistics known = statisticsOf(raster.samples, levelSet.data());
        std::size_t polygons = 0;
        PictureDocument document{levelSet};
        if (field.label) document.labels = &raster.samples;
        forEachRing(outlineOf(document), [&](const Ring&) { ++polygons; });
        const BandSize band = bandAround(levelSet);
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace();
        addStatistics(known);
        record->add("polygons", polygons);
        record->add("band", Json{{"points", band.points}, {"width", band.width}});
        report("{}: {} {}, {} × {} points, spacing {} × {}", input, raster.format,
               raster.isField ? "field" : "picture", raster.width, raster.height, hx, hy);
        reportNotes(raster);
        reportStatistics(known, note, "outline");
        report("inside   {:.1f} % of the points, {}", 100 * known.insidePart, counted(polygons, "polygon"));
        if (band.points > 0)
            detail("band     {} around the outline, {:.1f} cells wide",
                   counted(static_cast<std::size_t>(band.points), "point"), band.width);
    }

    void ofVolume() const {
        FullLevelSet3D levelSet;
        std::string note;
        const io::Image volume = read(levelSet, note);
        const Statistics known = statisticsOf(volume.samples, levelSet.data());
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
        addStatistics(known);
        record->add("surface", Json{{"triangles", triangles.size()}, {"area", area}, {"volume", enclosed}});
        record->add("band", Json{{"points", band.points}, {"width", band.width}});
        report("{}: {} {}, {} × {} × {} points, spacing {} × {} × {}{}", input, volume.format,
               volume.isField ? "field" : "volume", volume.width, volume.height, volume.depth, hx, hy, hz,
               volume.placement.affine ? ", placed by a matrix" : "");
        reportStatistics(known, note, "surface");
        report("inside   {:.1f} % of the points", 100 * known.insidePart);
        detail("closed   {}, area {:.7g}, volume {:.7g} in units of the spacing",
               counted(triangles.size(), "triangle"), area, enclosed);
        if (band.points > 0)
            detail("band     {} around the surface, {:.1f} cells wide",
                   counted(static_cast<std::size_t>(band.points), "point"), band.width);
    }

    void addStatistics(const Statistics& known) const {
        record->add("lowest", known.lowest);
        record->add("highest", known.highest);
        record->add("mean", known.mean);
        record->add("inside", known.insidePart);
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
