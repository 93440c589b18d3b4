#include <memory>
#include <optional>
#include <string>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/record.h"
#include "fields/planes.h"
#include "io/failure.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

/// What there is of lines.
struct Totals {
    std::size_t polygons = 0, lines = 0;
    double area = 0, length = 0;

    void add(const Outline& outline) {
        forEachRing(outline, [&](const Ring& ring) {
            area += quorbin::area(ring);
            length += quorbin::length(ring);
            ++polygons;
        });
        lines += outline.lines.size();
    }
};

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
        FullLevelSet2D levelSet;
        const io::Image raster = readWithCrossing(levelSet);
        PictureDocument document{levelSet, raster.isField ? nullptr : &raster, open, Drawing::kContour,
                                 tolerance};
        if (field.label) document.labels = &raster.samples;
        Totals totals;
        totals.add(outlineOf(document));
        const bool isInPixels = levelSet.getXSpace() == 1 && levelSet.getYSpace() == 1;
        reportTotals(totals, "", isInPixels ? "pixels" : "units of the spacing");
        if (result) result->write(document);
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
        StackDocument stack = outlinesOf(levelSet, volume);
        Totals totals;
        for (const auto& [index, outline] : stack.planes) totals.add(outline);
        const int count = io::planesAcross(volume, stack.axis);
        record->add("axis", std::string(1, "xyz"[stack.axis]));
        record->add("planes", stack.planes.size());
        reportTotals(
            totals,
            fmt::format(" in {} of {} planes along {}", stack.planes.size(), count, "xyz"[stack.axis]),
            "units of the spacing");
        if (isOneFile)
            result->write(stack);
        else if (written != nullptr)
            writePlanes(levelSet, volume, stack, *written, path);
    }

    StackDocument outlinesOf(const FullLevelSet3D& levelSet, const io::Image& volume) const {
        StackDocument stack{
            axis.value_or(2), volume.placement.spacing, volume.placement.affine, byAffine, open, {}};
        for (int index = 0; index < io::planesAcross(volume, stack.axis); ++index) {
            const FullLevelSet2D plane = fields::planeOf(levelSet, stack.axis, index);
            const io::Image samples = samplesOf(volume, {stack.axis, index}, field.label.has_value());
            PictureDocument document{plane, nullptr, open, Drawing::kContour, tolerance};
            if (field.label) document.labels = &samples.samples;
            Outline outline = outlineOf(document);
            if (!outline.regions.empty() || !outline.lines.empty())
                stack.planes.emplace(index, std::move(outline));
        }
        return stack;
    }

    /// The samples of a plane, where they are needed beside its field.
    static io::Image samplesOf(const io::Image& volume, const io::PlaneChoice& choice, bool isNeeded) {
        return isNeeded ? io::planeOf(volume, choice).picture : io::Image();
    }

    /// A file for every plane that has an outline, none of them before all names are known to be free.
    void writePlanes(const FullLevelSet3D& levelSet, const io::Image& volume, const StackDocument& stack,
                     const Format& written, const std::string& path) const {
        const auto digits = std::to_string(io::planesAcross(volume, stack.axis) - 1).size();
        const auto pathOf = [&](int index) { return withSuffix(path, fmt::format("{:0{}}", index, digits)); };
        for (const auto& [index, outline] : stack.planes) OutputFile(pathOf(index), force);
        for (const auto& [index, outline] : stack.planes) {
            Result result(*this, Kind::kPicture, written, pathOf(index));
            FullLevelSet2D plane = fields::planeOf(levelSet, stack.axis, index);
            const bool hasPicture = written.drawsPixels && !volume.isField;
            io::Image samples = samplesOf(volume, {stack.axis, index}, hasPicture || field.label);
            io::Image* const picture = hasPicture ? &samples : nullptr;
            const bool isResampled = written.drawsPixels && makePixelsSquare(plane, picture);
            PictureDocument document{plane, picture, open, Drawing::kContour, tolerance};
            if (field.label && !isResampled) document.labels = &samples.samples;
            result.write(document);
        }
    }

    void reportTotals(const Totals& totals, const std::string& where, const char* unit) const {
        if (totals.polygons == 0 && totals.lines == 0)
            throw Failure(
                kNoCrossing,
                fmt::format("{}: has an outline that encloses nothing; choose another --level", input));
        const std::string lines = open ? " and " + counted(totals.lines, "open line") : "";
        record->add("polygons", totals.polygons);
        if (open) record->add("openLines", totals.lines);
        record->add("area", totals.area);
        record->add("length", totals.length);
        report("{}: {}{}{}, area {:.10g} and length {:.10g} in {}", input,
               counted(totals.polygons, "polygon"), lines, where, totals.area, totals.length, unit);
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
