#include <memory>
#include <optional>

#include "contour_tracing.h"
#include "options.h"

namespace {

struct ContourCommand : FieldCommand {
    bool open = false;

    void run() const {
        std::optional<Result> result;
        if (!output.empty()) result.emplace(*this, "svg");
        FullLevelSet2D levelSet;
        const Raster raster = readWithCrossing(levelSet);
        reportContour(levelSet);
        if (result) result->write({levelSet, raster.isField ? nullptr : &raster, open});
    }

 private:
    void reportContour(const FullLevelSet2D& levelSet) const {
        const Contour contour = open ? traceOpen(levelSet) : traceClosed(levelSet);
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace();
        double enclosed = 0, around = 0;
        for (const auto& polygon : contour.polygons) {
            enclosed += area(contour.points, polygon, hx, hy);
            around += length(contour.points, polygon, hx, hy);
        }
        const std::string lines = open ? fmt::format(" and {} open lines", contour.openLines.size()) : "";
        const char* unit = hx == 1 && hy == 1 ? "pixels" : "units of the spacing";
        report("{}: {} polygons{}, area {} and length {} in {}", input, contour.polygons.size(), lines,
               enclosed, around, unit);
    }
};

}  // namespace

void addContour(CLI::App& app) {
    auto contour = std::make_shared<ContourCommand>();
    CLI::App& command = addCommand(app, "contour", "contour mask.png -o outline.svg",
                                   "Writes the outline: as SVG in pixels, as GeoJSON or CSV in index x "
                                   "spacing, or drawn over the picture (PNG, PDF).\n"
                                   "Outlines run counterclockwise around the inside (x right, y growing with "
                                   "the rows), holes the other way.",
                                   [contour] { contour->run(); });
    contour->addInput(command);
    contour->addOutput(command, false);
    command.add_flag("--open", contour->open,
                     "leave outlines open where they meet the border of the picture");
}
