#include "fields/segmentation.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <memory>
#include <optional>

#include "cli/field_command.h"
#include "cli/progress.h"
#include "fields/distance.h"
#include "io/failure.h"
#include "io/format.h"
#include "io/formats/outline.h"

namespace quorbin::tool {

namespace {

struct Segment : FieldCommand {
    double weight = 0.2;
    int maxSteps = 5000;
    bool implicit = false, onBand = false;
    std::string startLevel, startMask;
    std::string overlayPath, framesFolder;
    int frameEvery = 10;

    void run() {
        Result result(*this, Kind::kPicture, "svg");
        std::optional<OutputFile> overlay;
        if (!overlayPath.empty()) overlay.emplace(overlayPath, force);
        io::Image picture = readPicture(input, channel);
        picture.isField = false;  // floating-point values are intensities here
        if (!framesFolder.empty() && mkdir(framesFolder.c_str(), 0777) != 0 && errno != EEXIST)
            refuse("{}: cannot be made a folder ({}); choose another", framesFolder, std::strerror(errno));
        if (onBand && startMask.empty() && startLevel.empty()) startLevel = "otsu";
        FullLevelSet2D levelSet;
        start(picture, levelSet);
        follow(picture, levelSet);
        result.write(PictureDocument{levelSet, &picture});
        if (!overlay) return;
        draw({levelSet, &picture}, *overlay);
        overlay->commit();
    }

 private:
    static constexpr int kStepsBetweenLooks = 10;

    static void draw(const PictureDocument& document, OutputFile& out) {
        outputFormat(Kind::kPicture, "", "png", "").writePicture(document, out);
    }

    /// Circles all over the picture find what is in it without being told where to look.
    static double circleGrid(const io::Image& picture, int x, int y) {
        const double pitch = std::max(std::min(picture.width, picture.height) / 8.0, 4.0);
        const auto fromCentre = [=](int c) { return std::fmod(c + 0.5, pitch) - pitch / 2; };
        return std::hypot(fromCentre(x), fromCentre(y)) - 0.35 * pitch;
    }

    void start(const io::Image& picture, FullLevelSet2D& levelSet) {
        io::Image source = picture;
        std::string note = "circles";
        if (!startMask.empty()) {
            source = readPicture(startMask, "");
            if (source.width != picture.width || source.height != picture.height)
                refuse("{}: is {} × {}; a start for {} wants {} × {}", startMask, source.width, source.height,
                       input, picture.width, picture.height);
        } else if (startLevel.empty()) {
            source.isField = true;
            for (int y = 0, i = 0; y < picture.height; ++y)
                for (int x = 0; x < picture.width; ++x, ++i)
                    source.samples[static_cast<std::size_t>(i)] = circleGrid(picture, x, y);
        } else {
            field.level = startLevel == "otsu" ? otsuLevel(picture.samples) : std::stod(startLevel);
            note = fmt::format("level {}", *field.level);
        }
        FieldOptions options;
        const auto [hx, hy, none] = picture.placement.spacing;
        options.spacing = field.spacing.value_or(Spacing{hx, hy});
        options.level = startMask.empty() && !startLevel.empty() ? field.level : std::nullopt;
        std::string maskNote;
        makeField(source, options, levelSet, maskNote);
        if (!hasCrossing(levelSet))
            throw Failure(kNoCrossing, fmt::format("{}: the start has no outline; choose another", input));
        if (startMask.empty() && startLevel.empty()) takeTheBrighterSide(picture, levelSet);
        if (hasEqualSpacings(levelSet))
            distanceBySegments(levelSet);
        else
            distanceByMarching(levelSet);
        report("{}: starts with {}", input, startMask.empty() ? note : startMask);
    }

    /// Circles have no side of their own, and the model does not tell its regions apart.
    void takeTheBrighterSide(const io::Image& picture, FullLevelSet2D& levelSet) const {
        Segmentation segmentation(picture, weight, implicit);
        segmentation.measureMeans(levelSet);
        if (segmentation.meanInside() >= segmentation.meanOutside()) return;
        std::for_each_n(levelSet.data(), picture.samples.size(), [](double& value) { value = -value; });
    }

    void follow(const io::Image& picture, FullLevelSet2D& levelSet) const {
        constexpr double kStill = 0.1;  // samples
        Segmentation segmentation(picture, weight, implicit);
        Progress progress(!quiet);
        if (onBand && !suitsABand({levelSet.getXSpace(), levelSet.getYSpace()}))
            refuse("{}: its spacings differ too much for a band; leave out --band", input);
        std::optional<Band<2>> band;
        if (onBand) band.emplace(levelSet);
        frame(0, picture, levelSet);
        FullLevelSet2D before;
        int step = 0;
        double moved = 0;
        do {
            before = levelSet;
            const int steps = std::min(kStepsBetweenLooks, maxSteps - step);
            bool isLeft = true;
            if (band) {
                isLeft = segmentation.move(*band, levelSet, steps);
                band->copyTo(levelSet);
            } else {
                segmentation.move(levelSet, steps);
            }
            step += steps;
            if (!isLeft || !hasCrossing(levelSet))
                throw Failure(kNoCrossing,
                              fmt::format("{}: nothing is left of the outline after {} steps; give a smaller "
                                          "--weight or another start",
                                          input, step));
            moved = furthestApart(before, levelSet);
            if (step % frameEvery == 0) frame(step, picture, levelSet);
            progress.show(step, maxSteps);
        } while (moved >= kStill && step < maxSteps);
        report(
            "{}: {} after {} steps; mean intensity {:.4g} inside, {:.4g} outside (of 0 to 1)", input,
            moved < kStill ? "still" : fmt::format("not still (moves by {:.2g} pixels in 10 steps)", moved),
            step, segmentation.meanInside(), segmentation.meanOutside());
    }

    void frame(int step, const io::Image& picture, const FullLevelSet2D& levelSet) const {
        if (framesFolder.empty()) return;
        OutputFile file(fmt::format("{}/{:06}.png", framesFolder, step), force);
        draw({levelSet, &picture}, file);
        file.commit();
    }
};

}  // namespace

void addSegment(CLI::App& app) {
    auto segment = std::make_shared<Segment>();
    CLI::App& command = addCommand(
        app, "segment", "segment photo.png -o outline.svg --picture over.png",
        "Splits a picture into two regions of about constant grey with a short outline between them (Chan "
        "and\n"
        "Vese 2001): the outline moves by weight x curvature + (I - c_in)^2 - (I - c_out)^2, with the grey I "
        "scaled\n"
        "to 0..1 and its means on both sides, until it moves by less than a tenth of a pixel in ten steps.",
        [segment] { segment->run(); });
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
                                  "on a narrow band around the outline, from Otsu's threshold unless given: "
                                  "explicit, faster on large pictures, finds nothing far from the start");
    command
        .add_flag("--implicit", segment->implicit,
                  "implicit steps, in which the outline moves by up to a pixel")
        ->excludes(isExplicit)
        ->excludes(band);
    auto* level =
        command.add_option("--level", segment->startLevel,
                           "start from the outline at a grey value, or at Otsu's threshold; without a "
                           "start of yours, from circles all over the picture");
    level->type_name("VALUE|otsu")->check([](const std::string& text) {
        std::size_t end = 0;
        try {
            if (text == "otsu" || (std::isfinite(std::stod(text, &end)) && end == text.size())) return "";
        } catch (const std::logic_error&) {
        }
        return "give a number or otsu";
    });
    command.add_option("--init", segment->startMask, "start from a mask of the same size")
        ->type_name("MASK")
        ->excludes(level);
    command.add_option("--picture", segment->overlayPath,
                       "the outline over the picture, as PNG, beside the output");
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
