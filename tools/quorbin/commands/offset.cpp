#include <cmath>
#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/result_of.h"

namespace quorbin::tool {

namespace {

struct Offset : FieldCommand {
    double distance = 0;

    void run() const {
        runOnField(*this, [this](auto& levelSet) {
            smoothIfMask(levelSet);
            levelSet = withBar(!quiet, [&](const quorbin::Progress& progress) {
                return quorbin::offset(levelSet, distance, progress);
            });
        });
    }
};

}  // namespace

void addOffset(CLI::App& app) {
    auto offset = std::make_shared<Offset>();
    CLI::App& command = addCommand(
        app, "offset", "offset mask.png --by 3 -o larger.png",
        "Moves the outline, or the surface in a volume, outward by a distance, and inward if that "
        "is negative.\nOutward convex corners become round. A PNG that is written is a mask, white "
        "inside.",
        [offset] { runEach(*offset); });
    offset->addInput(command);
    offset->addVolume(command);
    offset->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    offset->addPixels(command);
    command
        .add_option_function<double>(
            "--by",
            [offset](double distance) {
                if (!(std::abs(distance) <= 1e100))
                    refuse("--by {}: is no distance; give a number from -1e100 to 1e100", distance);
                offset->distance = distance;
            },
            "distance, in units of the spacing")
        ->type_name("D")
        ->required();
}

}  // namespace quorbin::tool
