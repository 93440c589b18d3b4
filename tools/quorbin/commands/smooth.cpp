#include "commands/smooth.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <type_traits>

#include "band.h"
#include "contour_tracing.h"
#include "failure.h"
#include "options.h"
#include "progress.h"
#include "signed_distance.h"

namespace {

void step(FullLevelSet2D& levelSet, double implicitTime) {
    if (implicitTime == 0) return levelSet.moveAlongCurvature();
    levelSet.moveWithCurvatureImplicit(
        [](LevelSet2D*, int, int, double& k, double& vx, double& vy, double& source) {
            k = 1;
            vx = vy = source = 0;
        },
        implicitTime, 0);
}

/// Steps for the time of explicit ones on the dense grid. A step strips a layer of three, so every second one
/// is followed by a reinitialisation. These err inwards, much like motion by curvature: four steps take the
/// time of five.
int stepsOnBand(const FullLevelSet2D& levelSet, int steps) {
    return hasEqualSpacings(levelSet) ? static_cast<int>(std::lround(0.8 * steps)) : steps;
}
int stepsOnBand(const FullLevelSet3D&, int steps) { return static_cast<int>(std::lround(0.8 * steps)); }

void stepOnBand(FastLevelSet2D& band, double) { band.moveAlongCurvature(); }
void stepOnBand(FastLevelSet3D& band, double implicitTime) {
    constexpr int kSweeps = 15;
    if (implicitTime == 0) return band.moveAlongCurvature();
    band.moveWithCurvatureImplicit(
        [](LevelSet3D*, int, int, int, double& k, double&, double&, double&, double&) { k = 1; },
        implicitTime, kSweeps);
}

template <std::size_t dimensions, class Grid>
int smoothOnBand(Grid& levelSet, const Smoothing& smoothing, bool showProgress) {
    const bool isImplicit = smoothing.implicitTime > 0;
    const int count = isImplicit ? smoothing.steps : stepsOnBand(levelSet, smoothing.steps);
    const int reinitEvery = isImplicit ? 1 : 2;
    Band<dimensions> band(levelSet);
    Progress progress(count, showProgress);
    for (int done = 1; done <= count; ++done) {
        stepOnBand(band.points(), smoothing.implicitTime);
        if ((done % reinitEvery == 0 || done == count) && !band.reinitialise()) return done;
        progress.show(done);
    }
    band.copyTo(levelSet);
    return hasCrossing(levelSet) ? -1 : count;
}

void step(FullLevelSet3D& levelSet, double implicitTime) {
    implicitTime == 0 ? levelSet.moveAlongCurvature() : levelSet.moveAlongCurvatureImplicit();
}

template <class Grid, class MakeDistance>
int smoothGrid(Grid& levelSet, const Smoothing& smoothing, bool showProgress, MakeDistance makeDistance) {
    Progress progress(smoothing.steps, showProgress);
    makeDistance(levelSet);
    for (int done = 1; done <= smoothing.steps; ++done) {
        step(levelSet, smoothing.implicitTime);
        if (done % smoothing.reinitEvery == 0 || done == smoothing.steps) {
            if (!hasCrossing(levelSet)) return done;
            makeDistance(levelSet);
        }
        progress.show(done);
    }
    return -1;
}

}  // namespace

int smooth(FullLevelSet2D& levelSet, const Smoothing& smoothing, bool showProgress) {
    if (smoothing.onBand) return smoothOnBand<2>(levelSet, smoothing, showProgress);
    return smoothGrid(levelSet, smoothing, showProgress,
                      hasEqualSpacings(levelSet) ? distanceBySegments : distanceByMarching);
}

int smooth(FullLevelSet3D& levelSet, const Smoothing& smoothing, bool showProgress) {
    if (smoothing.onBand) return smoothOnBand<3>(levelSet, smoothing, showProgress);
    return smoothGrid(levelSet, smoothing, showProgress,
                      [](FullLevelSet3D& field) { field.ensureSignedDistanceFMM(); });
}

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
        Result result(*this, "fl2d");
        FullLevelSet2D levelSet;
        readWithCrossing(levelSet);
        requireBand({levelSet.getXSpace(), levelSet.getYSpace()});
        const double cell = levelSet.getXSpace() * levelSet.getYSpace();
        smoothField(levelSet, time.value_or(cell), cell);
        result.write({levelSet});
    }

 private:
    void runOnVolume() {
        if (time && !smoothing.onBand)
            refuse("{}: is a volume, whose implicit steps take the time 1; leave out --dt or add --band",
                   input);
        VolumeResult result(*this);
        FullLevelSet3D levelSet;
        const Volume volume = readWithCrossing(levelSet);
        const double hx = levelSet.getXSpace(), hy = levelSet.getYSpace(), hz = levelSet.getZSpace();
        requireBand({hx, hy, hz});
        if (implicit && !smoothing.onBand && hy != hz)
            refuse(
                "{}: its spacings along y and z are {} and {}; implicit steps want equal ones, so leave out "
                "--implicit or add --band",
                input, hy, hz);
        const double cell = std::cbrt(hx * hy * hz) * std::cbrt(hx * hy * hz);
        smoothField(levelSet, smoothing.onBand ? time.value_or(cell) : 1, hx * hy);
        result.write({levelSet, volume});
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
        const int vanished = smooth(levelSet, smoothing, !quiet);
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
        "15 %.",
        [smooth] { smooth->run(); });
    smooth->addInput(command);
    smooth->addVolume(command);
    smooth->addOutput(command, true, kFieldFormats);
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
                    refuse("--dt {}: is no time; give a number above 0", time);
                smooth->time = time;
            },
            "time of an implicit step (default DX x DY; volumes, only with --band: (DX DY DZ)^(2/3))")
        ->type_name("T");
    command.add_flag("--band", smooth->smoothing.onBand,
                     "on a narrow band around the outline or surface: faster on large inputs, in fewer steps "
                     "for the same time; a "
                     "field that is written then ends 3 samples from it");
}
