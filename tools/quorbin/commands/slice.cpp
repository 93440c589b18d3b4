#include <memory>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/record.h"
#include "fields/planes.h"
#include "io/failure.h"

namespace quorbin::tool {

namespace {

struct Slice : FieldCommand {
    io::PlaneChoice choice;

    void run() const {
        if (!isGivenVolume()) refuse("{}: is a picture already", input);
        Result result(*this, Kind::kPicture, "png");
        const bool isDrawn = result.format().drawsPixels;
        PlaneOfVolume cut = readPlane(choice, isDrawn);
        const char axis = "xyz"[choice.axis];
        record->add("axis", std::string(1, axis));
        record->add("at", cut.plane.index);
        report("{}: plane {} of {} along {}, {} × {} points", input, cut.plane.index,
               io::planesAcross(cut.plane.volume, choice.axis), axis, cut.field.getWidth(),
               cut.field.getHeight());
        io::Image* const picture = cut.range ? &cut.plane.picture : nullptr;
        const bool isResampled = isDrawn && makePixelsSquare(cut.field, picture);
        PictureDocument document{cut.field, picture, false,
                                 picture != nullptr ? Drawing::kPicture : Drawing::kContour};
        const std::vector<double> labels = cut.plane.picture.samples;
        if (field.label && !isResampled) document.labels = &labels;
        if (picture != nullptr) makeGreys(*picture, cut.range->first, cut.range->second);
        result.write(document);
    }
};

}  // namespace

void addSlice(CLI::App& app) {
    auto slice = std::make_shared<Slice>();
    CLI::App& command = addCommand(
        app, "slice", "slice head.nii.gz --axis y -o slice.png",
        "Writes a plane of a volume: as a picture in grey (PNG), stretched over the range of the volume, "
        "with "
        "square pixels whatever the spacings, or as the field that it is (FL2D, NPY, TIFF), point by point, "
        "or the outline (SVG ...). Its x and y are the two other axes in their order. A field is drawn in "
        "colours. Of files that are not compressed the plane alone is read where its level does not hang on "
        "the others.",
        [slice] { runEach(*slice); });
    slice->addInput(command);
    slice->addVolume(command);
    slice->addOutput(command, true, {Kind::kPicture});
    addAxis(command, [slice](std::size_t axis) { slice->choice.axis = axis; });
    command.add_option("--at", slice->choice.at, "index of the plane (default: the middle)")->type_name("I");
}

}  // namespace quorbin::tool
