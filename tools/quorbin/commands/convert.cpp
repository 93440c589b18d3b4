#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/format_table.h"

namespace quorbin::tool {

namespace {

struct Convert : FieldCommand {
    void run() const { isGivenVolume() ? ofVolume() : ofPicture(); }

 private:
    void ofVolume() const {
        Result result(*this, Kind::kVolume, "fl3d");
        FullLevelSet3D levelSet;
        const io::Image volume = read(levelSet);
        result.write(VolumeDocument{levelSet, volume.placement});
    }

    void ofPicture() const {
        Result result(*this, Kind::kPicture, "fl2d");
        FullLevelSet2D levelSet;
        read(levelSet);
        result.write(PictureDocument{levelSet});
    }
};

}  // namespace

void addConvert(CLI::App& app) {
    auto convert = std::make_shared<Convert>();
    CLI::App& command = addCommand(
        app, "convert", "convert photo.png -o field.npy",
        "Writes the field of a file in another format: as numbers (FL2D, NPY), drawn in colours (PNG, PDF), "
        "or\n"
        "its outline (SVG, GeoJSON, CSV); a volume as NIfTI, NPY, TIFF, FL3D, raw doubles, for ParaView "
        "(VTI), or its "
        "inside\nalone (FR3D). The field of a picture or a volume of intensities is level - grey, negative "
        "inside.",
        [convert] { runEach(*convert); });
    convert->addInput(command);
    convert->addVolume(command);
    convert->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    // Like --help, this wants no input.
    command
        .add_flag_callback(
            "--formats",
            [] {
                fmt::print("{}", textOfFormats());
                throw CLI::Success();
            },
            "list what this build reads and writes")
        ->trigger_on_parse()
        ->group("General");
}

}  // namespace quorbin::tool
