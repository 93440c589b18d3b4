#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "fields/planes.h"
#include "io/failure.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

/// What there is of lines.
struct Figures {
    std::size_t polygons = 0, lines = 0;
    double area = 0, length = 0;
};

/// The outline, which is measured while it goes by.
OutlineDocument measured(OutlineDocument outline, Figures& found) {
    outline.visit = [visit = std::move(outline.visit), &found](const TakeRegion& takeRegion,
                                                               const TakeLine& takeLine) {
        visit(
            [&](Polygon&& region) {
                forEachRing(region, [&](const Ring& ring) {
                    found.area += area(ring);
                    found.length += length(ring);
                    ++found.polygons;
                });
                takeRegion(std::move(region));
            },
            [&](Ring&& line) {
                ++found.lines;
                takeLine(std::move(line));
            });
    };
    return outline;
}

void letGoBy(const OutlineDocument& outline) {
    outline.visit([](Polygon&&) {}, [](Ring&&) {});
}

struct ContourCommand : FieldCommand {
    bool open = false;
    double tolerance = 0;
    bool wasGivenEmpty = false;  // -o ''
    std::optional<std::size_t> axis;
    bool byAffine = false;

    ContourCommand() { needsSamples = true; }

    void run() const {
        if (output.empty() && (!format.empty() || wasGivenEmpty))
            refuse("contour: there is no file to write; name one by -o");
        isGivenVolume() ? ofVolume() : ofPicture();
    }

 private:
    void ofPicture() const {
        if (axis || byAffine) refuse("{}: is a picture; leave out {}", input, axis ? "--axis" : "--affine");
        std::optional<Result> result;
        if (!output.empty()) result.emplace(*this, Kind::kPicture, "svg");
        PackedPicture picture;
        std::string note;
        const FieldRows rows = readRows(picture, note, true);
        reportNotes(picture.image);
        if (!note.empty()) report("{}: {}", input, note);
        const bool isListed = result && result->format().writeOutline != nullptr;
        Figures found;
        {
            Progress progress(!quiet);
            OutlineDocument outline = measured(outlineOf(rows, open, tolerance, progress.function()), found);
            outline.visit = [this, visit = std::move(outline.visit), &found](const TakeRegion& takeRegion,
                                                                             const TakeLine& takeLine) {
                visit(takeRegion, takeLine);
                requireAny(found);
            };
            isListed ? result->write(outline) : letGoBy(outline);
        }
        reportFigures(found, "", rows.xSpace == 1 && rows.ySpace == 1 ? "pixels" : "units of the spacing");
        if (result && !isListed) draw(rows, picture, *result);
    }

    /// Over the picture, for which the whole field is made.
    void draw(const FieldRows& rows, const PackedPicture& picture, Result& result) const {
        FullLevelSet2D levelSet;
        levelSet.init(rows.width, rows.height, rows.xSpace, rows.ySpace);
        if (levelSet.getWidth() != rows.width) throw std::bad_alloc();
        for (std::ptrdiff_t y = 0; y < rows.height; ++y)
            rows.read(static_cast<int>(y), levelSet.data() + y * rows.width);
        const bool hasPicture = !picture.image.isField;
        const io::Image raster = hasPicture || field.label ? unpacked(picture) : io::Image();
        PictureDocument document{levelSet, hasPicture ? &raster : nullptr, open, Drawing::kContour,
                                 tolerance};
        if (field.label) document.labels = &raster.samples;
        result.write(document);
    }

    void ofVolume() const {
        const Format* const written = output.empty() ? nullptr : &formatOf(*this, Kind::kPicture, "svg");
        const bool isOneFile = written != nullptr && written->writeStack != nullptr;
        const std::string path = written != nullptr ? outputPath("svg") : "";
        std::optional<Result> result;
        if (isOneFile) result.emplace(*this, Kind::kPicture, *written, path);
        if (byAffine && written != nullptr && !isOneFile)
            refuse("{}: {} has planes alone; leave out --affine, or write GeoJSON or CSV", output,
                   written->name);
        if (path == "-" && !isOneFile)
            refuse("-o -: would be a file a plane; name them by -o, or add --format geojson");
        FullLevelSet3D levelSet;
        const io::Image volume = readWithCrossing(levelSet);
        if (byAffine && !volume.placement.affine)
            refuse("{}: places its voxels nowhere; leave out --affine", input);
        Figures found;
        std::vector<int> crossed;
        const StackDocument stack = stackOf(levelSet, volume, found, crossed);
        if (isOneFile)
            result->write(stack);
        else
            stack.visit([](int, const OutlineDocument& outline) { letGoBy(outline); });
        const char axisName = "xyz"[stack.axis];
        record->add("axis", std::string(1, axisName));
        record->add("planes", crossed.size());
        reportFigures(found,
                      fmt::format(" in {} of {} planes along {}", crossed.size(),
                                  io::planesAcross(volume, stack.axis), axisName),
                      "units of the spacing");
        if (written != nullptr && !isOneFile)
            writePlanes(levelSet, volume, stack.axis, crossed, *written, path);
    }

    /// The outlines of all planes, which are made, measured and noted as crossed when they are visited.
    StackDocument stackOf(const FullLevelSet3D& levelSet, const io::Image& volume, Figures& found,
                          std::vector<int>& crossed) const {
        StackDocument stack{axis.value_or(2), volume.placement.spacing, volume.placement.affine, byAffine,
                            open};
        stack.visit = [this, &levelSet, &volume, &found, &crossed,
                       across = stack.axis](const TakePlane& take) {
            const int count = io::planesAcross(volume, across);
            Progress progress(!quiet);
            for (int index = 0; index < count; ++index) {
                const FullLevelSet2D plane = fields::planeOf(levelSet, across, index);
                const io::Image samples = samplesOf(volume, {across, index}, field.label.has_value());
                PictureDocument document{plane, nullptr, open, Drawing::kContour, tolerance};
                if (field.label) document.labels = &samples.samples;
                const std::size_t before = found.polygons + found.lines;
                take(index, measured(outlineOf(document), found));
                if (found.polygons + found.lines > before) crossed.push_back(index);
                progress.show(index + 1, count);
            }
            requireAny(found);
        };
        return stack;
    }

    /// The samples of a plane, where they are needed beside its field.
    static io::Image samplesOf(const io::Image& volume, const io::PlaneChoice& choice, bool isNeeded) {
        return isNeeded ? io::planeOf(volume, choice).picture : io::Image();
    }

    /// A file for every plane that has an outline, none of them before all names are known to be free.
    void writePlanes(const FullLevelSet3D& levelSet, const io::Image& volume, std::size_t across,
                     const std::vector<int>& crossed, const Format& written, const std::string& path) const {
        const auto digits = std::to_string(io::planesAcross(volume, across) - 1).size();
        const auto pathOf = [&](int index) { return withSuffix(path, fmt::format("{:0{}}", index, digits)); };
        for (const int index : crossed) OutputFile(pathOf(index), force);
        for (const int index : crossed) {
            Result result(*this, Kind::kPicture, written, pathOf(index));
            FullLevelSet2D plane = fields::planeOf(levelSet, across, index);
            const bool hasPicture = written.drawsPixels && !volume.isField;
            io::Image samples = samplesOf(volume, {across, index}, hasPicture || field.label);
            io::Image* const picture = hasPicture ? &samples : nullptr;
            const bool isResampled = written.drawsPixels && makePixelsSquare(plane, picture);
            PictureDocument document{plane, picture, open, Drawing::kContour, tolerance};
            if (field.label && !isResampled) document.labels = &samples.samples;
            result.write(document);
        }
    }

    void requireAny(const Figures& found) const {
        if (found.polygons == 0 && found.lines == 0)
            throw Failure(
                kNoCrossing,
                fmt::format("{}: has an outline that encloses nothing; choose another --level", input));
    }

    void reportFigures(const Figures& found, const std::string& where, const char* unit) const {
        const std::string lines = open ? " and " + counted(found.lines, "open line") : "";
        record->add("polygons", found.polygons);
        if (open) record->add("openLines", found.lines);
        record->add("area", found.area);
        record->add("length", found.length);
        report("{}: {}{}{}, area {:.10g} and length {:.10g} in {}", input, counted(found.polygons, "polygon"),
               lines, where, found.area, found.length, unit);
    }
};

}  // namespace

void addContour(CLI::App& app) {
    auto contour = std::make_shared<ContourCommand>();
    CLI::App& command = addCommand(app, "contour", "contour mask.png -o outline.svg",
                                   "Says how many polygons the outline has, their area and length, and with "
                                   "-o writes it: as SVG, GeoJSON or CSV in units of the spacing, "
                                   "or drawn over the picture (PNG, PDF).\n"
                                   "Of a volume it takes every plane across --axis. GeoJSON and CSV are one "
                                   "file with the index and the place of each outline's plane; other formats "
                                   "are a file for each plane that has an outline, named OUTPUT-INDEX before "
                                   "the ending (-o outline.svg: outline-007.svg), in a folder if -o names "
                                   "one by a slash at its end.\n"
                                   "Outlines run counterclockwise around the inside (x right, y growing with "
                                   "the rows), holes the other way.",
                                   [contour] { runEach(*contour); });
    contour->addInput(command);
    contour->addVolume(command);
    contour->addOutput(command, false, {Kind::kPicture});
    command.get_option("--output")->each([contour](const std::string& path) {
        contour->wasGivenEmpty = path.empty();
    });
    command
        .add_option(
            "--simplify", contour->tolerance,
            "leave out points that lie within this distance of the line without them, in units of the "
            "spacing; outlines never come to cross")
        ->check(CLI::Range(0.0, 1e100))
        ->type_name("TOLERANCE");
    addAxis(command, [contour](std::size_t axis) { contour->axis = axis; });
    command.add_flag("--affine", contour->byAffine,
                     "give the points of a volume three coordinates, where the file's matrix puts them "
                     "(GeoJSON, CSV)");
    command.add_flag("--open", contour->open,
                     "leave outlines open where they meet the border of the picture");
}

}  // namespace quorbin::tool
