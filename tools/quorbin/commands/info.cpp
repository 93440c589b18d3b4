#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

#include <nlohmann/json.hpp>

#include "band.h"
#include "contour_tracing.h"
#include "formats/readers.h"
#include "options.h"

namespace {

struct Info : FieldCommand {
    bool json = false;

    void run() const {
        const Raster raster = readRaster(input, channel);
        FullLevelSet2D levelSet;
        std::string note;
        makeField(raster, field, levelSet, note);
        const auto [low, high] = std::minmax_element(raster.samples.begin(), raster.samples.end());
        const auto count = static_cast<double>(raster.samples.size());
        const double mean = std::accumulate(raster.samples.begin(), raster.samples.end(), 0.0) / count;
        const auto inside = std::count_if(levelSet.data(), levelSet.data() + raster.samples.size(),
                                          [](double value) { return value <= 0; });
        const Contour contour = outlineOf(levelSet, false);
        FastLevelSet2D band;
        initQuietly(band, levelSet, true);
        std::vector<brin::Vec2<double>> points;
        std::vector<std::pair<int, int>> segments;
        levelSet.getLinesUnique(points, segments);
        double around = 0;
        for (const auto& [start, end] : segments) {
            const auto along =
                points[static_cast<std::size_t>(end)] - points[static_cast<std::size_t>(start)];
            around += std::hypot(along.x, along.y);
        }
        const double bandWidth = around > 0 ? band.size() / around : 0;
        const double part = static_cast<double>(inside) / count;
        const Spacing spacing{levelSet.getXSpace(), levelSet.getYSpace()};
        if (json) {
            const nlohmann::ordered_json object = {{"file", input},
                                                   {"format", raster.format},
                                                   {"kind", raster.isField ? "field" : "picture"},
                                                   {"width", raster.width},
                                                   {"height", raster.height},
                                                   {"spacing", {spacing.x, spacing.y}},
                                                   {"lowest", *low},
                                                   {"highest", *high},
                                                   {"mean", mean},
                                                   {"note", note},
                                                   {"inside", part},
                                                   {"polygons", contour.polygons.size()},
                                                   {"band", {{"points", band.size()}, {"width", bandWidth}}}};
            // A file's name need not be text.
            fmt::print("{}\n", object.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
            return;
        }
        fmt::print("{}: {} {}, {} × {} points, spacing {} × {}\n", input, raster.format,
                   raster.isField ? "field" : "picture", raster.width, raster.height, spacing.x, spacing.y);
        fmt::print("values   {} to {}, mean {:.6g}\n", *low, *high, mean);
        if (!note.empty()) fmt::print("outline  {}\n", note);
        fmt::print("inside   {:.1f} % of the points, {}\n", 100 * part,
                   counted(contour.polygons.size(), "polygon"));
        fmt::print("band     {} around the outline, {:.1f} cells wide\n",
                   counted(static_cast<std::size_t>(band.size()), "point"), bandWidth);
    }
};

}  // namespace

void addInfo(CLI::App& app) {
    auto info = std::make_shared<Info>();
    CLI::App& command =
        addCommand(app, "info", "info photo.png", "Says what a file holds and what its outline would be.",
                   [info] { info->run(); });
    info->addInput(command);
    command.add_flag("--json", info->json, "print a JSON object");
}
