#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/record.h"
#include "io/failure.h"
#include "io/png_image.h"

namespace quorbin::tool {

namespace {

struct Slice : FieldCommand {
    std::string axis = "z";
    std::optional<int> at;

    Slice() { needsSamples = true; }

    void run() const {
        if (!isGivenVolume()) refuse("{}: is a picture already", input);
        Result result(*this, Kind::kPicture, "png");
        FullLevelSet3D levelSet;
        const io::Image volume = read(levelSet);
        const int count = axis == "x" ? volume.width : axis == "y" ? volume.height : volume.depth;
        const int index = at.value_or(count / 2);
        if (index < 0 || index >= count)
            refuse("{}: has planes 0 to {} along {}; there is none at {}", input, count - 1, axis, index);
        FullLevelSet2D plane;
        cut(levelSet, index, plane);
        const std::optional<io::Image> picture = pictureOf(volume, levelSet, index);
        record->add("axis", axis);
        record->add("at", index);
        report("{}: plane {} of {} along {}, {} × {} points", input, index, count, axis, plane.getWidth(),
               plane.getHeight());
        result.write(PictureDocument{plane, picture ? &*picture : nullptr, false,
                                     picture ? Drawing::kPicture : Drawing::kContour});
    }

 private:
    void cut(const FullLevelSet3D& levelSet, int index, FullLevelSet2D& plane) const {
        const auto getPlane = axis == "x"   ? &FullLevelSet3D::getXPlane
                              : axis == "y" ? &FullLevelSet3D::getYPlane
                                            : &FullLevelSet3D::getZPlane;
        if (!(levelSet.*getPlane)(index, plane, false)) throw std::bad_alloc();
    }

    /// The intensities of the plane as greys, black to white over the range of the whole volume. A field has
    /// none.
    std::optional<io::Image> pictureOf(const io::Image& volume, FullLevelSet3D& scratch, int index) const {
        if (volume.isField) return std::nullopt;
        std::copy(volume.samples.begin(), volume.samples.end(), scratch.data());
        FullLevelSet2D plane;
        cut(scratch, index, plane);
        io::Image picture;
        picture.width = plane.getWidth();
        picture.height = plane.getHeight();
        const auto [low, high] = std::minmax_element(volume.samples.begin(), volume.samples.end());
        const double darkest = *low, span = *high > *low ? *high - *low : 1;
        const std::size_t points =
            static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
        picture.samples.resize(points);
        std::transform(plane.data(), plane.data() + points, picture.samples.begin(),
                       [=](double sample) { return std::round(255 * (sample - darkest) / span); });
        return picture;
    }
};

}  // namespace

void addSlice(CLI::App& app) {
    auto slice = std::make_shared<Slice>();
    CLI::App& command = addCommand(
        app, "slice", "slice head.nii.gz --axis y -o slice.png",
        "Writes a plane of a volume: as a picture in grey (PNG), stretched over the range of the volume, or "
        "as the field that it is (FL2D, NPY, or "
        "the "
        "outline,\nSVG ...). Its x and y are the two other axes in their order. A field is drawn in colours.",
        [slice] { runEach(*slice); });
    slice->addInput(command);
    slice->addVolume(command);
    slice->addOutput(command, true, {Kind::kPicture});
    command.add_option("--axis", slice->axis, "across which the plane lies (default z)")
        ->check(CLI::IsMember({"x", "y", "z"}))
        ->type_name("x|y|z");
    command.add_option("--at", slice->at, "index of the plane (default: the middle)")->type_name("I");
}

}  // namespace quorbin::tool
