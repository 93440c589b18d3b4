#include <memory>

#include "cli/field_command.h"

namespace quorbin::tool {

namespace {

void convertVolume(const FieldCommand& convert) {
    Result result(convert, Kind::kVolume, "fl3d");
    FullLevelSet3D levelSet;
    const io::Image volume = convert.read(levelSet);
    result.write(VolumeDocument{levelSet, volume.placement});
}

void convertPicture(const FieldCommand& convert) {
    Result result(convert, Kind::kPicture, "fl2d");
    FullLevelSet2D levelSet;
    convert.read(levelSet);
    result.write(PictureDocument{levelSet});
}

}  // namespace

void addConvert(CLI::App& app) {
    auto convert = std::make_shared<FieldCommand>();
    CLI::App& command = addCommand(
        app, "convert", "convert photo.png -o field.npy",
        "Writes the field of a file in another format: as numbers (FL2D, NPY), drawn in colours (PNG, PDF), "
        "or\n"
        "its outline (SVG, GeoJSON, CSV); a volume as NIfTI, NPY, TIFF, FL3D, raw doubles, for ParaView "
        "(VTI), or its "
        "inside\nalone (FR3D). The field of a picture or a volume of intensities is level - grey, negative "
        "inside.",
        [convert] { convert->isGivenVolume() ? convertVolume(*convert) : convertPicture(*convert); });
    convert->addInput(command);
    convert->addVolume(command);
    convert->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
}

}  // namespace quorbin::tool
