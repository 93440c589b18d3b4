#include <memory>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/record.h"
#include "io/failure.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

struct ContourCommand : FieldCommand {
    bool open = false;
    double tolerance = 0;
    bool wasGivenEmpty = false;  // -o ''

    ContourCommand() { needsSamples = true; }

    void run() const {
        std::optional<Result> result;
        if (!output.empty())
            result.emplace(*this, Kind::kPicture, "svg");
        else if (!format.empty() || wasGivenEmpty)
            refuse("contour: there is no file to write; name one by -o");
        FullLevelSet2D levelSet;
        const io::Image raster = readWithCrossing(levelSet);
        reportContour(levelSet);
        if (result)
            result->write(PictureDocument{levelSet, raster.isField ? nullptr : &raster, open,
                                          Drawing::kContour, tolerance});
    }

 private:
    void reportContour(const FullLevelSet2D& levelSet) const {
        const Outline outline = outlineOf(levelSet, open, tolerance);
        double enclosed = 0, around = 0;
        std::size_t polygons = 0;
        forEachRing(outline, [&](const Ring& ring) {
            enclosed += area(ring);
            around += length(ring);
            ++polygons;
        });
        if (polygons == 0 && outline.lines.empty())
            throw Failure(
                kNoCrossing,
                fmt::format("{}: has an outline that encloses nothing; choose another --level", input));
        const std::string lines = open ? " and " + counted(outline.lines.size(), "open line") : "";
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace();
        const char* unit = hx == 1 && hy == 1 ? "pixels" : "units of the spacing";
        record->add("polygons", polygons);
        if (open) record->add("openLines", outline.lines.size());
        record->add("area", enclosed);
        record->add("length", around);
        report("{}: {}{}, area {:.10g} and length {:.10g} in {}", input, counted(polygons, "polygon"), lines,
               enclosed, around, unit);
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
