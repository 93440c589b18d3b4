#include "fields/smoothing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <type_traits>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "fields/band.h"
#include "fields/distance.h"
#include "io/failure.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

struct Smooth : FieldCommand {
    Smoothing smoothing;
    std::optional<int> reinitEvery;
    std::optional<double> time;
    bool implicit = false;

    void run() {
        if (smoothing.onBand && reinitEvery)
            refuse("smooth: a --band is reinitialised as often as it needs; leave out --reinit");
        if (time && !implicit)
            refuse("smooth: --dt goes with --implicit; explicit steps take the stable time");
        if (isGivenVolume()) return runOnVolume();
        if (smoothing.onBand && implicit)
            refuse(
                "{}: is a picture, and on a --band of one implicit steps solve another equation; leave out "
                "--band or --implicit",
                input);
        Result result(*this, Kind::kPicture, "fl2d");
        FullLevelSet2D levelSet;
        readWithCrossing(levelSet);
        requireBand({levelSet.getXSpace(), levelSet.getYSpace()});
        const double cell = levelSet.getXSpace() * levelSet.getYSpace();
        smoothField(levelSet, time.value_or(cell), cell);
        result.write(PictureDocument{levelSet, nullptr, false, Drawing::kMask});
    }

 private:
    void runOnVolume() {
        if (time && !smoothing.onBand)
            refuse("{}: is a volume, whose implicit steps take the time 1; leave out --dt or add --band",
                   input);
        Result result(*this, Kind::kVolume, "fl3d");
        FullLevelSet3D levelSet;
        const io::Image volume = readWithCrossing(levelSet);
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace(), hz = levelSet.getZSpace();
        requireBand({hx, hy, hz});
        if (implicit && !smoothing.onBand && hy != hz)
            refuse(
                "{}: its spacings along y and z are {} and {}; implicit steps want equal ones, so leave out "
                "--implicit or add --band",
                input, hy, hz);
        const double cell = std::cbrt(hx * hy * hz) * std::cbrt(hx * hy * hz);
        smoothField(levelSet, smoothing.onBand ? time.value_or(cell) : 1, hx * hy);
        result.write(VolumeDocument{levelSet, volume.placement});
    }

    void requireBand(std::initializer_list<double> spacings) const {
        if (smoothing.onBand && !suitsABand(spacings))
            refuse("{}: its spacings differ too much for a band; leave out --band", input);
    }

    template <class Grid>
    void smoothField(Grid& levelSet, double implicitTime, double cell) {
        if (implicit) {
            smoothing.implicitTime = implicitTime;
            smoothing.reinitEvery =
                std::max(1, static_cast<int>(std::min(kTimeBetween * cell / implicitTime, 1e9)));
        }
        if (reinitEvery) smoothing.reinitEvery = *reinitEvery;
        smoothing.restores = false;  // an interruption ends the tool
        Progress progress(!quiet);
        const int vanished = smooth(levelSet, smoothing, progress.function());
        if (vanished >= 0)
            throw Failure(
                kNoCrossing,
                fmt::format("{}: nothing is left of the {} after {} steps; give fewer --steps", input,
                            std::is_same_v<Grid, FullLevelSet3D> ? "surface" : "outline", vanished));
    }

    static constexpr double kTimeBetween = 5;  // of reinitialisations, over that of a cell
};

}  // namespace

void addSmooth(CLI::App& app) {
    auto smooth = std::make_shared<Smooth>();
    CLI::App& command = addCommand(
        app, "smooth", "smooth mask.png --steps 200 -o smooth.svg",
        "Moves the outline by its curvature, which rounds it off and removes specks. A step takes the time\n"
        "1 / (2/dx^2 + 2/dy^2), a quarter at spacing 1; a disc of radius r is gone after the time r^2 / 2.\n"
        "Each reinitialisation errs a little inwards: discs shrink faster by 3 % at the default and equal\n"
        "spacings, by 14 % at others, where it is by fast marching. In volumes a step takes 1 / (2/dx^2 + "
        "2/dy^2 +\n"
        "2/dz^2), a ball of radius r is gone after r^2 / 4, and reinitialisation, always by marching, adds "
        "15 %.\nA PNG that is written is a mask, white inside; --format heat draws the field in colours.",
        [smooth] { runEach(*smooth); });
    smooth->addInput(command);
    smooth->addVolume(command);
    smooth->addOutput(command, true, {Kind::kPicture, Kind::kVolume});
    command.add_option("--steps", smooth->smoothing.steps, "number of steps")
        ->required()
        ->check(CLI::Range(0, 1000000000));
    command
        .add_option("--reinit", smooth->reinitEvery,
                    "make the field a signed distance again every K steps (default 10; implicit: as many as "
                    "take the time 5 DX DY)")
        ->check(CLI::Range(1, 1000000000))
        ->type_name("[every] K");
    command.add_flag("--implicit", smooth->implicit, "implicit steps, stable over any time");
    command
        .add_option_function<double>(
            "--dt",
            [smooth](double time) {
                if (!(time > 1e-100 && time < 1e100))
                    refuse("--dt {}: is no time; give a number from 1e-100 to 1e100", time);
                smooth->time = time;
            },
            "time of an implicit step (default DX x DY; volumes, only with --band: (DX DY DZ)^(2/3))")
        ->type_name("T");
    command.add_flag("--band", smooth->smoothing.onBand,
                     "on a narrow band around the outline or surface: faster on large inputs, in fewer steps "
                     "for the same time; a "
                     "field that is written then ends 3 samples from it");
}

}  // namespace quorbin::tool
