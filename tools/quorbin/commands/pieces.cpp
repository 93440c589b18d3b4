#include <cmath>
#include <memory>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/result_of.h"

namespace quorbin::tool {

namespace {

struct Pieces : FieldCommand {
    std::optional<int> largest;
    std::optional<double> fill;

    void run() const {
        if (!largest && !fill) refuse("pieces: give --largest N, --fill AREA, or both");
        runOnField(*this, [this](auto& levelSet) {
            smoothIfMask(levelSet);
            if (fill)
                levelSet = withBar(!quiet, [&](const quorbin::Progress& progress) {
                    return quorbin::withoutHolesBelow(levelSet, *fill, progress);
                });
            if (largest)
                levelSet = withBar(!quiet, [&](const quorbin::Progress& progress) {
                    return quorbin::largestPieces(levelSet, static_cast<std::size_t>(*largest), progress);
                });
        });
    }
};

}  // namespace

void addPieces(CLI::App& app) {
    auto pieces = std::make_shared<Pieces>();
    CLI::App& command = addCommand(
        app, "pieces", "pieces mask.png --largest 1 --fill 50 -o largest.png",
        "Keeps the largest pieces of the inside, and fills holes. A piece is what hangs together by "
        "neighbours along\nthe axes. A PNG that is written is a mask, white inside.",
        [pieces] { runEach(*pieces); });
    pieces->addInput(command);
    pieces->addVolume(command);
    pieces->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    pieces->addPixels(command);
    command.add_option("--largest", pieces->largest, "how many pieces to keep, the largest first")
        ->check(CLI::Range(1, 1000000000))
        ->type_name("N");
    command
        .add_option_function<double>(
            "--fill",
            [pieces](double size) {
                if (!(size >= 0)) refuse("--fill {}: is no size; give a number of at least 0", size);
                pieces->fill = size;
            },
            "fill holes below this area, or volume, in units of the spacing")
        ->type_name("AREA");
}

}  // namespace quorbin::tool
