#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <fmt/core.h>
#include <CLI/CLI.hpp>

#include "fields/from_samples.h"
#include "io/failure.h"
#include "io/format.h"

// What the tool is put together from.
using namespace quorbin::io;
using namespace quorbin::fields;

namespace quorbin::tool {

/// What most commands are given: a file to read, how it becomes a field, and where the result goes.
struct FieldCommand {
    std::string input;
    std::string output;
    std::string format;
    std::string channel;
    FieldOptions field;
    std::optional<RawLayout> raw;
    bool everyLabel = false;    ///< runForLabels
    bool needsSamples = false;  ///< besides the field that is made of them
    bool force = false;
    bool quiet = false;

    /// The input, opened at the first call.
    InputFile& file() const;

    void addInput(CLI::App& command);
    /// The same without what makes a field of the picture.
    void addPicture(CLI::App& command);
    /// --inside alone, which addInput has too.
    CLI::Option* addInside(CLI::App& command, const std::string& description);
    /// What a command that takes volumes too is given besides.
    void addVolume(CLI::App& command);
    /// kinds are those of what it may write.
    void addOutput(CLI::App& command, bool required, std::initializer_list<Kind> kinds);

    /// Whether the input is a volume; refuses raw samples of which no more is said.
    bool isGivenVolume() const;

    /// What the input holds.
    io::Image image() const;

    /// Reads the input and makes its field; says which level was taken. The samples are gone from what is
    /// returned unless they are needed.
    io::Image read(FullLevelSet2D& levelSet) const;
    io::Image read(FullLevelSet3D& levelSet) const;

    /// The same, with what there is to say about the level.
    io::Image read(FullLevelSet2D& levelSet, std::string& note) const;
    io::Image read(FullLevelSet3D& levelSet, std::string& note) const;

    /// The same for a command that needs an outline: ends with status 4 where there is none.
    io::Image readWithCrossing(FullLevelSet2D& levelSet) const;
    io::Image readWithCrossing(FullLevelSet3D& levelSet) const;

    /// Gives what is written a name with a label.
    void nameAfterLabel(double label);
    /// Refuses names of files that are there already, or cannot be made.
    void requireNewFiles() const;
    /// The labels of the input, which stays in memory for all of them.
    std::vector<double> keepLabels();

    /// Prints what there is to say about the reading of a file.
    void reportNotes(const io::Image& image) const;

    /// Prints a line unless the user wants quiet.
    template <class... Args>
    void report(fmt::format_string<Args...> line, Args&&... args) const {
        if (!quiet) fmt::print("{}\n", fmt::format(line, std::forward<Args>(args)...));
    }

 private:
    mutable std::shared_ptr<InputFile> file_;
    std::shared_ptr<const io::Image> kept_;
};

/// The path with a label before its ending: a-3.ply.
std::string withLabel(const std::string& path, double label);

/// Runs a command, or with --label all a copy of it for every label. If nothing is left of one of them, the
/// others are written nevertheless.
template <class Command>
void runForLabels(Command command) {
    if (!command.everyLabel) return command.run();
    const std::vector<double> labels = command.keepLabels();
    const auto commandFor = [&](double label) {
        Command one = command;
        one.field.label = label;
        one.nameAfterLabel(label);
        return one;
    };
    for (const double label : labels) commandFor(label).requireNewFiles();
    std::string vanished;
    for (const double label : labels) try {
            commandFor(label).run();
        } catch (const Failure& failure) {
            if (failure.status != kNoCrossing) throw;
            vanished += fmt::format(" {}", label);
        }
    if (!vanished.empty())
        throw Failure(kNoCrossing, fmt::format("{}: nothing is left of these labels, the others are done:{}",
                                               command.input, vanished));
}

/// The result of a command on its way out: path and format are looked at before the work begins, and numbers
/// that are not finite are refused at its end.
class Result {
 public:
    Result(const FieldCommand& command, Kind kind, const std::string& usualFormat);
    void write(const PictureDocument& document);
    void write(const VolumeDocument& document);
    void write(const MeshDocument& mesh);

 private:
    void requireNumbers(const double* values, std::size_t count) const;

    const Format& format_;
    std::string input_;
    OutputFile file_;
};

/// Reads a picture; refuses a volume.
io::Image readPicture(const std::string& path, const std::string& channel);

/// Refuses a level that makes values too large to work with.
void requireUsableLevel(double level);

/// Refuses a file for a picture beside the output, if one is named, that is not PNG or is the output.
void requirePng(const std::string& picture, const std::string& output);

/// "1 polygon", "2 polygons".
std::string counted(std::size_t count, const std::string& noun);

/// Adds a subcommand that runs body. Its help begins with the example.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& example,
                     const std::string& summary, std::function<void()> body);

/// One function a command; each adds itself to the tool.
void addInfo(CLI::App& app);
void addDistance(CLI::App& app);
void addSmooth(CLI::App& app);
void addSegment(CLI::App& app);
void addContour(CLI::App& app);
void addMask(CLI::App& app);
void addMesh(CLI::App& app);
void addSlice(CLI::App& app);
void addConvert(CLI::App& app);
void addDemo(CLI::App& app);

}  // namespace quorbin::tool
