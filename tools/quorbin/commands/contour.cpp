#include <memory>
#include <optional>

#include "cli/field_command.h"
#include "io/failure.h"
#include "io/formats/outline.h"

namespace quorbin::tool {

namespace {

struct ContourCommand : FieldCommand {
    bool open = false;
    bool wasGivenEmpty = false;  // -o ''

    void run() const {
        std::optional<Result> result;
        if (!output.empty())
            result.emplace(*this, Kind::kPicture, "svg");
        else if (!format.empty() || wasGivenEmpty)
            refuse("contour: there is no file to write; name one by -o");
        FullLevelSet2D levelSet;
        const io::Image raster = readWithCrossing(levelSet);
        reportContour(levelSet);
        if (result) result->write(PictureDocument{levelSet, raster.isField ? nullptr : &raster, open});
    }

 private:
    void reportContour(const FullLevelSet2D& levelSet) const {
        const Contour contour = outlineOf(levelSet, open);
        if (contour.polygons.empty() && contour.openLines.empty())
            throw Failure(
                kNoCrossing,
                fmt::format("{}: has an outline that encloses nothing; choose another --level", input));
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace();
        double enclosed = 0, around = 0;
        for (const auto& polygon : contour.polygons) {
            enclosed += quorbin::area(contour.points, polygon, hx, hy);
            around += quorbin::length(contour.points, polygon, hx, hy);
        }
        const std::string lines = open ? " and " + counted(contour.openLines.size(), "open line") : "";
        const char* unit = hx == 1 && hy == 1 ? "pixels" : "units of the spacing";
        report("{}: {}{}, area {:.10g} and length {:.10g} in {}", input,
               counted(contour.polygons.size(), "polygon"), lines, enclosed, around, unit);
    }
};

}  // namespace

void addContour(CLI::App& app) {
    auto contour = std::make_shared<ContourCommand>();
    CLI::App& command = addCommand(app, "contour", "contour mask.png -o outline.svg",
                                   "Says how many polygons the outline has, their area and length, and with "
                                   "-o writes it: as SVG in pixels, as GeoJSON or CSV in index x "
                                   "spacing, or drawn over the picture (PNG, PDF).\n"
                                   "Outlines run counterclockwise around the inside (x right, y growing with "
                                   "the rows), holes the other way.",
                                   [contour] { contour->run(); });
    contour->addInput(command);
    contour->addOutput(command, false, {Kind::kPicture});
    command.get_option("--output")->each([contour](const std::string& path) {
        contour->wasGivenEmpty = path.empty();
    });
    command.add_flag("--open", contour->open,
                     "leave outlines open where they meet the border of the picture");
}

}  // namespace quorbin::tool
