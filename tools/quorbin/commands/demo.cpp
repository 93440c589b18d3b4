#include <chrono>
#include <memory>
#include <optional>

#include "cli/each_input.h"
#include "cli/field_command.h"
#include "cli/progress.h"
#include "cli/record.h"
#include "commands/demo_picture.h"
#include "fields/distance.h"
#include "fields/smoothing.h"
#include "io/failure.h"
#include "io/format.h"
#include "io/outline.h"

namespace quorbin::tool {

namespace {

constexpr double kTime = 50;  // removes what is smaller than a disc of radius 10

struct Demo : FieldCommand {
    void run() {
        if (output == "-") refuse("demo: writes a folder; name one by -o");
        if (everyLabel) refuse("--label all: is not for the demo; name one label");
        requireDrawing(output);
        const io::Image picture = input.empty() ? demoPicture() : readPicture(input, reading);
        reportNotes(picture);
        makeFolder(output);
        FullLevelSet2D levelSet;
        std::string note;
        const std::optional<double> level = makeField(picture, field, levelSet, note);
        record->addImage(picture, {levelSet.getXSpace(), levelSet.getYSpace(), 1});
        if (level) record->add("level", *level);
        if (!hasCrossing(levelSet))
            throw Failure(kNoCrossing, fmt::format("{}: has no outline; choose another --level", name()));

        report("{} × {} pixels{}{}", picture.width, picture.height, note.empty() ? "" : ", ", note);
        if (input.empty())
            save("0-picture.png", "png", "the picture", {levelSet, &picture, false, Drawing::kPicture});
        save("1-mask.png", "mask", "white inside, black outside", {levelSet});
        save("2-outline-before.svg", "svg", "its outline", {levelSet});
        save("2-outline-before.png", "png", "the outline over the picture", {levelSet, &picture});
        smoothIfMask(levelSet);
        timed("signed distance", [&] { distanceByProjection(levelSet); });
        save("3-distance.fl2d", "fl2d", "distance to the outline, negative inside", {levelSet});
        save("3-distance.png", "png", "the same in colours, with its zero line", {levelSet});
        timed(fmt::format("motion by curvature for the time {}", kTime), [&] {
            Progress progress(!quiet);
            Smoothing smoothing;
            smoothing.time = kTime;
            smoothing.flow.progress = progress.function();
            if (smooth(levelSet, smoothing).hasVanished)
                throw Failure(kNoCrossing,
                              fmt::format("{}: nothing is left of the outline after the time {}; take a "
                                          "picture with larger shapes, or another --level",
                                          name(), kTime));
        });
        save("4-smooth.fl2d", "fl2d", "the field after it", {levelSet});
        save("4-smooth.png", "png", "the same in colours, with its zero line", {levelSet});
        save("5-outline-after.svg", "svg", "the smooth outline", {levelSet});
        save("5-outline-after.geojson", "geojson", "the same as polygons with holes", {levelSet});
        save("5-outline-after.png", "png", "the smooth outline over the picture", {levelSet, &picture});
    }

 private:
    std::string name() const { return input.empty() ? "the demo's picture" : input; }

    template <class Work>
    void timed(const std::string& what, Work work) const {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        report("{} in {:.0f} ms", what, time.count());
    }

    void save(const std::string& name, const std::string& formatOfFile, const char* what,
              const PictureDocument& document) const {
        const auto start = std::chrono::steady_clock::now();
        const std::string path = output + "/" + name;
        OutputFile file(path, force);
        outputFormat(Kind::kPicture, name, formatOfFile, "").writePicture(document, file);
        file.commit();
        record->addWritten(path);
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        report("  {:<34} {} ({:.0f} ms)", path, what, time.count());
    }
};

}  // namespace

void addDemo(CLI::App& app) {
    auto demo = std::make_shared<Demo>();
    CLI::App& command = addCommand(
        app, "demo", "demo -o demo",
        "Does the main job, from a noisy picture to a smooth closed outline, on a picture of its own or\n"
        "on yours (--input), and writes every stage of it into a folder.",
        [demo] { runEach(*demo, [](Demo& one) { one.run(); }); });
    demo->addInput(command, "--input");
    command.add_option("-o,--output", demo->output, "folder to write to, made if it is not there")
        ->type_name("DIR")
        ->group("Output")
        ->required();
    command.add_flag("-f,--force", demo->force, "overwrite what is in the folder")->group("Output");
}

}  // namespace quorbin::tool
