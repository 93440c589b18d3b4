#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"

namespace quorbin::tool {

namespace {

struct Mask : FieldCommand {
    void run() const { isGivenVolume() ? ofVolume() : ofPicture(); }

 private:
    void ofVolume() const {
        Result result(*this, Kind::kVolumeMask, "nii");
        FullLevelSet3D levelSet;
        const io::Image volume = read(levelSet);
        VolumeDocument document{levelSet, volume.placement};
        document.isMask = true;
        result.write(document);
    }

    void ofPicture() const {
        Result result(*this, Kind::kMask, "png");
        FullLevelSet2D levelSet;
        read(levelSet);
        result.write(PictureDocument{levelSet, nullptr, false, Drawing::kMask});
    }
};

}  // namespace

void addMask(CLI::App& app) {
    auto mask = std::make_shared<Mask>();
    CLI::App& command = addCommand(
        app, "mask", "mask photo.png -o mask.png",
        "Writes a picture that is white (255) inside and black (0) outside; of a volume one of 255 "
        "and 0\n(TIFF), or 1 and 0 (NIfTI, NRRD, MetaImage).",
        [mask] { runEach(*mask); });
    mask->addInput(command);
    mask->addVolume(command);
    mask->addOutput(command, true, {Kind::kMask, Kind::kVolumeMask});
}

}  // namespace quorbin::tool
