#include <memory>

#include "options.h"

void addMask(CLI::App& app) {
    auto mask = std::make_shared<FieldCommand>();
    CLI::App& command =
        addCommand(app, "mask", "mask photo.png -o mask.png",
                   "Writes a picture that is white (255) inside and black (0) outside.", [mask] {
                       Result result(*mask, maskWriterFor(mask->output, mask->format));
                       FullLevelSet2D levelSet;
                       mask->read(levelSet);
                       result.write({levelSet});
                   });
    mask->addInput(command);
    mask->addOutput(command, true);
}
