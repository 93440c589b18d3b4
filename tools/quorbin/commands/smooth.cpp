#include "fields/smoothing.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <type_traits>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "fields/band.h"
#include "fields/distance.h"
#include "io/failure.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

constexpr double kLargestTime = 1e100;

struct Smooth : FieldCommand {
    Smoothing smoothing;
    std::optional<double> time, every;
    std::optional<int> steps;
    std::string framesFolder;

    void run() {
        if (!time && !steps) refuse("smooth: give --time T, or --steps N of it");
        if (!framesFolder.empty() && (batch->hasMany || everyLabel))
            refuse("--frames {}: is for one input; give one", framesFolder);
        if (isGivenVolume()) return runOnVolume();
        Result result(*this, Kind::kPicture, "fl2d");
        FullLevelSet2D levelSet;
        needsSamples = !framesFolder.empty();
        const io::Image picture = readWithCrossing(levelSet);
        requireBand({levelSet.getXSpace(), levelSet.getYSpace()});
        smoothIfMask(levelSet);
        if (asPixels) distanceByProjection(levelSet);
        smoothField(levelSet, [&](int number) {
            if (!framesFolder.empty())
                writeFrame(framesFolder, number, {levelSet, picture.isField ? nullptr : &picture}, force);
        });
        result.write(PictureDocument{levelSet, nullptr, false, Drawing::kMask});
    }

 private:
    void runOnVolume() {
        if (!framesFolder.empty()) refuse("{}: is a volume; --frames are of pictures, leave them out", input);
        Result result(*this, Kind::kVolume, "fl3d");
        FullLevelSet3D levelSet;
        const io::Image volume = readWithCrossing(levelSet);
        requireBand({levelSet.getXSpace(), levelSet.getYSpace(), levelSet.getZSpace()});
        smoothIfMask(levelSet);
        if (asPixels) distanceByProjection(levelSet);
        smoothField(levelSet, [](int) {});
        result.write(VolumeDocument{levelSet, volume.placement});
    }

    void requireBand(std::initializer_list<double> spacings) const {
        if (smoothing.onBand && !suitsABand(spacings))
            refuse("{}: its spacings differ too much for a band; leave out --band", input);
    }

    /// Moves the field, and calls show(0), show(1) ... at the start and after each part of the time.
    template <class Grid, class Show>
    void smoothField(Grid& levelSet, Show show) {
        const double unit = steps ? explicitStep(levelSet) : 1, all = steps ? *steps : *time;
        const double part = framesFolder.empty() ? all : every.value_or(all / 10);
        constexpr double kMostParts = 1e6;
        const double parts = all > 0 ? std::ceil(all / part) : 1;
        if (!(parts < kMostParts)) refuse("--every {}: makes more than a million pictures; give more", part);
        if (!framesFolder.empty()) makeFolder(framesFolder);
        CurvatureFlowResult sum;
        show(0);
        {
            Progress progress(!quiet);
            for (int number = 1; number <= parts && !sum.hasVanished; ++number) {
                const double start = (number - 1) * part;
                smoothing.time = unit * (std::min(all, number * part) - start);
                if (const quorbin::Progress told = progress.function())
                    smoothing.flow.progress = [=](int done, int of) {
                        return told(static_cast<int>((number - 1 + double(done) / of) / parts * of), of);
                    };
                const CurvatureFlowResult one = smooth(levelSet, smoothing);
                sum = {unit * start + one.time, sum.steps + one.steps, one.hasVanished};
                show(number);
            }
        }
        record->add("time", sum.time);
        record->add("steps", sum.steps);
        record->add("vanished", sum.hasVanished);
        if (sum.hasVanished)
            throw Failure(kNoCrossing,
                          fmt::format("{}: nothing is left of the {} after the time {:.6g}; give {}", input,
                                      std::is_same_v<Grid, FullLevelSet3D> ? "surface" : "outline", sum.time,
                                      steps ? "fewer --steps" : "less --time"));
        report("{}: moved for the time {:.6g}, in {}", input, sum.time,
               counted(static_cast<std::size_t>(sum.steps), "step"));
    }
};

}  // namespace

void addSmooth(CLI::App& app) {
    auto smooth = std::make_shared<Smooth>();
    CLI::App& command =
        addCommand(app, "smooth", "smooth mask.png --time 50 -o smooth.svg",
                   "Moves the outline by its curvature, which rounds it off and removes specks. The time is "
                   "that of\nphi_t = kappa |grad phi| in units of the spacing: a disc of radius r is gone "
                   "after r^2 / 2, in a volume a\nball after r^2 / 4. The result is a signed distance. A PNG "
                   "that is written is a mask, white inside;\n--format heat draws the field in colours.",
                   [smooth] { runEach(*smooth); });
    smooth->addInput(command);
    smooth->addVolume(command);
    smooth->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    smooth->addPixels(command);
    const auto positive = [](const char* name, std::optional<double>& value, bool canBeZero) {
        return [name, &value, canBeZero](double given) {
            if (!(given >= 0 && given <= kLargestTime && (canBeZero || given > 0)))
                refuse("{} {}: is no time; give a number {}", name, given,
                       canBeZero ? "from 0 to 1e100" : "above 0, to 1e100");
            value = given;
        };
    };
    auto* time = command
                     .add_option_function<double>("--time", positive("--time", smooth->time, true),
                                                  "for how long it moves, in squared units of the spacing")
                     ->type_name("T");
    command
        .add_option("--steps", smooth->steps,
                    "in the place of it: N times the longest explicit step, 1 / (2/dx^2 + 2/dy^2 + 2/dz^2), "
                    "a quarter for pictures at spacing 1")
        ->check(CLI::Range(0, 1000000000))
        ->type_name("N")
        ->excludes(time);
    using Steps = CurvatureFlowOptions::Steps;
    CurvatureFlowOptions& flow = smooth->smoothing.flow;
    auto* implicit = command.add_flag_callback(
        "--implicit", [&flow] { flow.steps = Steps::kLarge; },
        "large steps that choose themselves, within 0.5 % of the way (default, if the time is long)");
    command
        .add_flag_callback(
            "--explicit", [&flow] { flow.steps = Steps::kExplicit; },
            "many small steps, within 0.1 % of the way (default, if the time is short)")
        ->excludes(implicit);
    auto* band = command
                     .add_flag("--band", smooth->smoothing.onBand,
                               "explicit steps on a narrow band around the outline or surface: faster on "
                               "large inputs for a short time; a field that is written then ends 4 samples "
                               "from it")
                     ->excludes(implicit);
    auto* constant = command
                         .add_flag("--constant", flow.keepsSize,
                                   "keep the area or volume inside: outlines become round without shrinking")
                         ->excludes(band);
    command
        .add_option("--minmax", flow.noiseRadius,
                    "move only what bends within about R samples: noise goes, and the shape stays as it is")
        ->check(CLI::Range(1, 1000))
        ->type_name("R")
        ->excludes(implicit)
        ->excludes(band)
        ->excludes(constant);
    auto* frames = command
                       .add_option("--frames", smooth->framesFolder,
                                   "folder for pictures of the outline on its way, 000000.png the start")
                       ->type_name("DIR");
    command
        .add_option_function<double>("--every", positive("--every", smooth->every, false),
                                     "time, or steps, between frames (default: a tenth of all)")
        ->type_name("K")
        ->needs(frames);
}

}  // namespace quorbin::tool
