#include <memory>

#include "options.h"

void addConvert(CLI::App& app) {
    auto convert = std::make_shared<FieldCommand>();
    CLI::App& command = addCommand(
        app, "convert", "convert photo.png -o field.npy",
        "Writes the field of a file in another format: as numbers (FL2D, NPY), drawn in colours (PNG, PDF), "
        "or\n"
        "its outline (SVG, GeoJSON, CSV). The field of a picture is level - grey, negative inside.",
        [convert] {
            Result result(*convert, "fl2d");
            FullLevelSet2D levelSet;
            convert->read(levelSet);
            result.write({levelSet});
        });
    convert->addInput(command);
    convert->addOutput(command, true);
}
