#include <memory>
#include <new>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "io/failure.h"
#include "io/formats/outline.h"

namespace quorbin::tool {

namespace {

struct ContourCommand : FieldCommand {
    bool open = false;
    double tolerance = 0;
    bool wasGivenEmpty = false;  // -o ''

    void run() const {
        std::optional<Result> result;
        if (!output.empty())
            result.emplace(*this, Kind::kPicture, "svg");
        else if (!format.empty() || wasGivenEmpty)
            refuse("contour: there is no file to write; name one by -o");
        PackedPicture picture;
        std::string note;
        const FieldRows rows = readRows(picture, note, true);
        reportNotes(picture.image);
        if (!note.empty()) report("{}: {}", input, note);
        Figures found;
        {
            Progress progress(!quiet);
            const OutlineDocument outline =
                measured(outlineOf(rows, open, tolerance, progress.function()), found);
            if (result && result->takesOutline())
                result->write(outline);
            else
                outline.visit([](Polygon&&) {}, [](Ring&&) {});
        }
        reportFigures(found, rows);
        if (result && !result->takesOutline()) draw(rows, picture, *result);
    }

 private:
    struct Figures {
        double area = 0, length = 0;
        std::size_t polygons = 0, lines = 0;
    };

    /// The outline, which is measured while it goes by. Fails where it encloses nothing.
    OutlineDocument measured(OutlineDocument outline, Figures& found) const {
        outline.visit = [this, visit = std::move(outline.visit), &found](const TakeRegion& takeRegion,
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
            if (found.polygons == 0 && found.lines == 0)
                throw Failure(
                    kNoCrossing,
                    fmt::format("{}: has an outline that encloses nothing; choose another --level", input));
        };
        return outline;
    }

    /// Over the picture, for which the whole field is made.
    void draw(const FieldRows& rows, const PackedPicture& picture, Result& result) const {
        FullLevelSet2D levelSet;
        levelSet.init(rows.width, rows.height, rows.xSpace, rows.ySpace);
        if (levelSet.getWidth() != rows.width) throw std::bad_alloc();
        for (std::ptrdiff_t y = 0; y < rows.height; ++y)
            rows.read(static_cast<int>(y), levelSet.data() + y * rows.width);
        const io::Image raster = picture.image.isField ? io::Image() : unpacked(picture);
        result.write(PictureDocument{levelSet, picture.image.isField ? nullptr : &raster, open,
                                     Drawing::kContour, tolerance});
    }

    void reportFigures(const Figures& found, const FieldRows& rows) const {
        const std::string lines = open ? " and " + counted(found.lines, "open line") : "";
        const char* unit = rows.xSpace == 1 && rows.ySpace == 1 ? "pixels" : "units of the spacing";
        record->add("polygons", found.polygons);
        if (open) record->add("openLines", found.lines);
        record->add("area", found.area);
        record->add("length", found.length);
        report("{}: {}{}, area {:.10g} and length {:.10g} in {}", input, counted(found.polygons, "polygon"),
               lines, found.area, found.length, unit);
    }
};

}  // namespace

void addContour(CLI::App& app) {
    auto contour = std::make_shared<ContourCommand>();
    CLI::App& command = addCommand(app, "contour", "contour mask.png -o outline.svg",
                                   "Says how many polygons the outline has, their area and length, and with "
                                   "-o writes it: as SVG, GeoJSON or CSV in units of the spacing, "
                                   "or drawn over the picture (PNG, PDF).\n"
                                   "Outlines run counterclockwise around the inside (x right, y growing with "
                                   "the rows), holes the other way.",
                                   [contour] { runEach(*contour); });
    contour->addInput(command);
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
    command.add_flag("--open", contour->open,
                     "leave outlines open where they meet the border of the picture");
}

}  // namespace quorbin::tool
