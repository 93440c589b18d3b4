#include <memory>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/format_table.h"
#include "cli/parsing.h"
#include "cli/progress.h"
#include "fields/resampling.h"

namespace quorbin::tool {

namespace {

struct Convert : FieldCommand {
    std::optional<PartOfAxes> part;
    std::optional<StepsOfAxes> steps;
    std::optional<CountsOfAxes> counts;

    void run() {
        const bool isVolume = isGivenVolume();
        needsSamples = field.label && !isVolume;
        isVolume ? ofVolume() : ofPicture();
    }

 private:
    void ofVolume() const {
        requireAxes(3);
        Result result(*this, Kind::kVolume, "fl3d");
        FullLevelSet3D levelSet;
        io::Image volume = read(levelSet);
        change([&] {
            if (part) crop(levelSet, part->values, volume.placement);
            resampleBy(
                [&](const Lattice& to, const quorbin::Progress& shown) {
                    resample(levelSet, to, volume.placement, shown);
                },
                latticeOf(levelSet));
        });
        if (isChanged())
            report("{}: becomes {} × {} × {} points, spacing {} × {} × {}", input, levelSet.getWidth(),
                   levelSet.getHeight(), levelSet.getDepth(), levelSet.getXSpace(), levelSet.getYSpace(),
                   levelSet.getZSpace());
        result.write(VolumeDocument{levelSet, volume.placement});
    }

    void ofPicture() const {
        requireAxes(2);
        Result result(*this, Kind::kPicture, "fl2d");
        FullLevelSet2D levelSet;
        io::Image picture = read(levelSet);
        PictureDocument document{levelSet};
        // Between samples that are made anew there are no labels.
        if (field.label && !steps && !counts) document.labels = &picture.samples;
        change([&] {
            if (part && field.label)
                picture.samples = cropped(picture.samples, latticeOf(levelSet).size, part->values);
            if (part) crop(levelSet, part->values);
            if (part)
                document.origin = {part->values.from[0] * levelSet.getXSpace(),
                                   part->values.from[1] * levelSet.getYSpace()};
            resampleBy(
                [&](const Lattice& to, const quorbin::Progress& shown) { resample(levelSet, to, shown); },
                latticeOf(levelSet));
        });
        if (isChanged())
            report("{}: becomes {} × {} points, spacing {} × {}", input, levelSet.getWidth(),
                   levelSet.getHeight(), levelSet.getXSpace(), levelSet.getYSpace());
        result.write(document);
    }

    /// Does the work; what is wrong gets the name of the input.
    template <class Work>
    void change(Work work) const {
        try {
            work();
        } catch (const Failure& failure) {
            throw naming(input, failure);
        }
    }

    bool isChanged() const { return part || steps || counts; }

    /// Runs work(lattice, progress) where a lattice is asked for.
    template <class Work>
    void resampleBy(Work work, const Lattice& old) const {
        if (!steps && !counts) return;
        Progress progress(!quiet);
        work(steps ? withSpacing(old, steps->values) : withSize(old, counts->values), progress.function());
    }

    /// Refuses numbers for other axes than the input has.
    void requireAxes(int axes) const {
        const auto require = [&](const char* option, int count) {
            if (count != axes && count != 1)
                refuse("{}: is a {}; its {} has {} numbers", input, axes == 2 ? "picture" : "volume", option,
                       axes == 2 ? "two" : "three");
        };
        if (part) require("--crop before and after the colon", part->count);
        if (steps) require("--resample", steps->count);
        if (counts) require("--resize", counts->count);
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
    command
        .add_option_function<std::string>(
            "--crop", [convert](const std::string& text) { convert->part = parseCrop(text); },
            "keep a part alone, by indices of samples, as in 10,20:110,220, or 0,0,8:64,64,24 of a volume: "
            "from the first ones up to the second ones, which are not in it. The level is still that of the "
            "whole, and where the output has room for a place (NIfTI, NRRD, MetaImage, VTI; GeoJSON and CSV "
            "of "
            "pictures), points keep theirs")
        ->type_name("PART");
    auto* resample =
        command
            .add_option_function<std::string>(
                "--resample", [convert](const std::string& text) { convert->steps = parseSteps(text); },
                "give samples this spacing, or these, by cubic interpolation, after --crop. The first one "
                "stays where it is; fewer than before are averages")
            ->type_name("DX[,DY[,DZ]]");
    command
        .add_option_function<std::string>(
            "--resize", [convert](const std::string& text) { convert->counts = parseCounts(text); },
            "the same by the number of samples; the last ones stay where they are, too")
        ->type_name("W,H[,D]")
        ->excludes(resample);
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
