#include <array>
#include <memory>
#include <string>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "cli/result_of.h"
#include "fields/distance.h"

namespace quorbin::tool {

namespace {

/// Figures under the names that they have in a table and as JSON.
Json figuresOf(const Figures2D& f) {
    return {{"area", f.area},
            {"perimeter", f.perimeter},
            {"centroid", {f.centroid.x, f.centroid.y}},
            {"lowest", {f.lowest.x, f.lowest.y}},
            {"highest", {f.highest.x, f.highest.y}},
            {"totalCurvature", f.totalCurvature}};
}
Json figuresOf(const Figures3D& f) {
    return {{"volume", f.volume},
            {"surfaceArea", f.surfaceArea},
            {"centroid", {f.centroid.x, f.centroid.y, f.centroid.z}},
            {"lowest", {f.lowest.x, f.lowest.y, f.lowest.z}},
            {"highest", {f.highest.x, f.highest.y, f.highest.z}},
            {"totalMeanCurvature", f.totalMeanCurvature}};
}

struct Measure : FieldCommand {
    bool byPieces = false;
    std::string second;

    void run() const {
        if (isGivenVolume()) return measureField<FullLevelSet3D>();
        measureField<FullLevelSet2D>();
    }

 private:
    template <class Grid>
    void measureField() const {
        Grid levelSet;
        readWithCrossing(levelSet);
        tell(figuresOf(withBar(!quiet, [&](const quorbin::Progress& progress) {
            return quorbin::measure(levelSet, progress);
        })));
        if (byPieces) tellPieces(levelSet);
        if (second.empty()) return;
        Grid other;
        readOther(second, other);
        requireCrossing(*this, other);
        requireSameGrid(*this, levelSet, second, other);
        for (Grid* one : {&levelSet, &other})
            if (isMask(*one)) distanceByMarching(*one);
        const Comparison c = withBar(
            !quiet, [&](const quorbin::Progress& progress) { return compare(levelSet, other, progress); });
        tell({{"dice", c.dice},
              {"symmetricDifference", c.symmetricDifference},
              {"meanDistance", c.meanDistance},
              {"hausdorffDistance", c.hausdorffDistance}});
    }

    void tell(const Json& figures) const {
        for (const auto& [name, value] : figures.items()) {
            record->add(name, value);
            report("{:<20} {}", name, text(value));
        }
    }

    template <class Grid>
    void tellPieces(const Grid& levelSet) const {
        Json all = Json::array();
        std::string header = fmt::format("{:>6} {:>9}", "piece", "samples");
        const auto pieces = withBar(
            !quiet, [&](const quorbin::Progress& progress) { return quorbin::pieces(levelSet, progress); });
        for (const auto& piece : pieces) {
            Json one = figuresOf(piece.figures);
            std::string row = fmt::format("{:>6} {:>9}", all.size() + 1, piece.samples);
            for (const auto& [name, value] : one.items()) {
                if (all.empty()) header += fmt::format("  {:>22}", name);
                row += fmt::format("  {:>22}", text(value));
            }
            if (all.empty()) report("{}", header);
            report("{}", row);
            one["samples"] = piece.samples;
            all.push_back(one);
        }
        record->add("pieces", all);
    }

    static std::string text(const Json& value) {
        if (!value.is_array()) return fmt::format("{:.7g}", value.get<double>());
        std::string all;
        for (const Json& one : value)
            all += (all.empty() ? "" : ",") + fmt::format("{:.6g}", one.get<double>());
        return all;
    }
};

}  // namespace

void addMeasure(CLI::App& app) {
    auto measure = std::make_shared<Measure>();
    CLI::App& command =
        addCommand(app, "measure", "measure a.png b.png",
                   "Tells area and perimeter of the inside, or volume and surface of that in a volume, its "
                   "centroid, the "
                   "box\naround it and the integral of its curvature, in units of the spacing; with a second "
                   "input of the "
                   "same size\nand spacings how far the two agree, too. A mask is taken as it is.",
                   [measure] {
                       if (measure->inputs.size() > 2) refuse("measure: takes one input or two");
                       Measure one = *measure;
                       if (one.inputs.size() == 2) {
                           one.second = one.inputs.back();
                           one.inputs.pop_back();
                       }
                       runEach(one);
                   });
    measure->addInput(command);
    measure->addVolume(command);
    command.add_flag("--pieces", measure->byPieces, "the same of each piece");
}

}  // namespace quorbin::tool
