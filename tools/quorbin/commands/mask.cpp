#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"

namespace quorbin::tool {

namespace {

struct Mask : FieldCommand {
    void run() const {
        Result result(*this, Kind::kMask, "png");
        FullLevelSet2D levelSet;
        read(levelSet);
        result.write(PictureDocument{levelSet, nullptr, false, Drawing::kMask});
    }
};

}  // namespace

void addMask(CLI::App& app) {
    auto mask = std::make_shared<Mask>();
    CLI::App& command = addCommand(app, "mask", "mask photo.png -o mask.png",
                                   "Writes a picture that is white (255) inside and black (0) outside.",
                                   [mask] { runEach(*mask); });
    mask->addInput(command);
    mask->addOutput(command, true, {Kind::kMask});
}

}  // namespace quorbin::tool
