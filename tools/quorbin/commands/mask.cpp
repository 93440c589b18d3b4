#include <memory>

#include "cli/field_command.h"

namespace quorbin::tool {

void addMask(CLI::App& app) {
    auto mask = std::make_shared<FieldCommand>();
    CLI::App& command =
        addCommand(app, "mask", "mask photo.png -o mask.png",
                   "Writes a picture that is white (255) inside and black (0) outside.", [mask] {
                       Result result(*mask, Kind::kMask, "png");
                       FullLevelSet2D levelSet;
                       mask->read(levelSet);
                       result.write(PictureDocument{levelSet, nullptr, false, Drawing::kMask});
                   });
    mask->addInput(command);
    mask->addOutput(command, true, {Kind::kMask});
}

}  // namespace quorbin::tool
