#include "fields/segmentation.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "fields/distance.h"
#include "io/failure.h"
#include "io/format.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

struct Segment : FieldCommand {
    double weight = 0.2;
    int maxSteps = 5000;
    bool implicit = false, onBand = false;
    std::string startMask;
    std::string overlayPath, framesFolder;
    int frameEvery = 10;

    void run() {
        if (batch->hasMany)
            for (const std::string& path : {overlayPath, startMask, framesFolder})
                if (!path.empty()) refuse("{}: is for one input; give one", path);
        Result result(*this, Kind::kPicture, "svg");
        requirePng(overlayPath, output);
        for (const std::string& path : {overlayPath, framesFolder})
            if (!path.empty()) requireDrawing(path);
        std::optional<OutputFile> overlay;
        if (!overlayPath.empty()) overlay.emplace(overlayPath, force);
        io::Image picture = readPicture(input, reading);
        reportNotes(picture);
        picture.isField = false;  // floating-point values are intensities here
        if (!framesFolder.empty()) makeFolder(framesFolder);
        FullLevelSet2D levelSet;
        start(picture, levelSet);
        const SegmentResult segmented = follow(picture, levelSet);
        result.write(PictureDocument{levelSet, &picture});
        if (overlay) {
            outputFormat(Kind::kPicture, "", "png", "").writePicture({levelSet, &picture}, *overlay);
            overlay->commit();
            record->addWritten(overlayPath);
        }
        if (!segmented.isStill)
            throw Failure(
                kNotStill,
                fmt::format("{}: warning: written as it is after {}, but still moving, by {:.2g} "
                            "pixels at last; give more --max-steps",
                            input, counted(static_cast<std::size_t>(maxSteps), "step"), segmented.moved));
    }

 private:
    void start(const io::Image& picture, FullLevelSet2D& levelSet) {
        FieldOptions options = field;
        const auto [hx, hy, none] = picture.placement.spacing;
        options.spacing = field.spacing.value_or(Spacing{hx, hy});
        std::string note;
        if (startMask.empty()) {
            // Otsu's threshold minimises the same energy but for the length of the outline.
            if (!options.level) options.level = otsuLevel(picture.samples);
            makeField(picture, options, levelSet, note);
            note = fmt::format("level {}", *options.level);
        } else {
            const io::Image mask = readPicture(startMask, {});
            if (mask.width != picture.width || mask.height != picture.height)
                refuse("{}: is {} × {}; a start for {} wants {} × {}", startMask, mask.width, mask.height,
                       input, picture.width, picture.height);
            makeField(mask, options, levelSet, note);
            note = startMask;
        }
        record->addImage(picture, {levelSet.getXSpace(), levelSet.getYSpace(), 1});
        if (options.level && startMask.empty()) record->add("level", *options.level);
        if (!hasCrossing(levelSet))
            throw Failure(kNoCrossing, fmt::format("{}: the start has no outline; choose another", input));
        distanceByProjection(levelSet);
        record->add("start", note);
        report("{}: starts with {}", input, note);
    }

    SegmentResult follow(const io::Image& picture, FullLevelSet2D& levelSet) const {
        Progress progress(!quiet);
        SegmentOptions options;
        options.weight = weight;
        options.maxSteps = maxSteps;
        options.implicit = implicit;
        options.onBand = onBand;
        options.progress = progress.function();
        options.follow = [&](int step, const FullLevelSet2D& reached) {
            if (step % frameEvery == 0) frame(step, picture, reached);
        };
        SegmentResult result;
        try {
            result = fields::segment(picture, levelSet, options);
        } catch (const Failure& failure) {
            throw naming(input, failure);
        }
        record->add("steps", result.steps);
        record->add("still", result.isStill);
        record->add("meanInside", result.meanInside);
        record->add("meanOutside", result.meanOutside);
        report("{}: {} after {} steps; mean intensity {:.4g} inside, {:.4g} outside (of 0 to 1)", input,
               result.isStill ? "still" : "not still", result.steps, result.meanInside, result.meanOutside);
        return result;
    }

    void frame(int step, const io::Image& picture, const FullLevelSet2D& levelSet) const {
        if (!framesFolder.empty()) writeFrame(framesFolder, step, {levelSet, &picture}, force);
    }
};

std::optional<double> parseStart(const std::string& text) {
    if (text == "otsu") return std::nullopt;
    std::size_t end = 0;
    double level = 0;
    try {
        level = std::stod(text, &end);
    } catch (const std::logic_error&) {
    }
    if (end == 0 || end != text.size()) refuse("--level {}: give a number or otsu", text);
    requireUsableLevel(level);
    return level;
}

}  // namespace

void addSegment(CLI::App& app) {
    auto segment = std::make_shared<Segment>();
    CLI::App& command = addCommand(
        app, "segment", "segment photo.png -o outline.svg --picture over.png",
        "Splits a picture into two regions of about constant grey with a short outline between them (Chan "
        "and\n"
        "Vese 2001): the outline moves by weight x curvature + (I - c_in)^2 - (I - c_out)^2, with the grey I "
        "scaled\n"
        "to 0..1 and its means on both sides, until it moves by less than a tenth of a pixel in ten steps; "
        "if that is\n"
        "not so after the last step, the result is written and the exit status is 5.",
        [segment] { runEach(*segment); });
    segment->addPicture(command);
    segment->addOutput(command, true, {Kind::kPicture});
    command
        .add_option(
            "--weight", segment->weight,
            "of the curvature: the larger, the smoother the outline and the more specks go (default 0.2)")
        ->check(CLI::Range(1e-6, 1e6))
        ->type_name("W");
    command.add_option("--max-steps", segment->maxSteps, "stop after so many steps (default 5000)")
        ->check(CLI::Range(1, 1000000000))
        ->type_name("N");
    auto* isExplicit =
        command.add_flag("--explicit", "explicit steps, each within the stable time (default)");
    auto* band = command.add_flag("--band", segment->onBand,
                                  "on a narrow band around the outline: explicit, faster on large pictures, "
                                  "finds nothing far from the start");
    command
        .add_flag("--implicit", segment->implicit,
                  "implicit steps, in which the outline moves by up to a pixel")
        ->excludes(isExplicit)
        ->excludes(band);
    auto* level = command.add_option_function<std::string>(
        "--level", [segment](const std::string& text) { segment->field.level = parseStart(text); },
        "start from the outline at a grey value, or at Otsu's threshold (default)");
    level->type_name("VALUE|otsu");
    command.add_option("--init", segment->startMask, "start from a mask of the same size, white inside")
        ->type_name("FILE")
        ->excludes(level)
        ->excludes(
            segment->addInside(command, "what is inside: above (default) or below the level at the start"));
    command
        .add_option("--picture", segment->overlayPath,
                    "the outline over the picture, as PNG, beside the output")
        ->type_name("FILE");
    command.add_option("--frames", segment->framesFolder, "folder for a picture of every Nth step")
        ->type_name("DIR");
    command.add_option("--every", segment->frameEvery, "steps between frames, in tens (default 10)")
        ->check([](const std::string& text) {
            return text.size() > 1 && text.back() == '0' && text.size() < 10 && text.front() != '0' &&
                           text.find_first_not_of("0123456789") == std::string::npos
                       ? ""
                       : "give a multiple of 10";
        })
        ->type_name("N");
}

}  // namespace quorbin::tool
