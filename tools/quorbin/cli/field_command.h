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

    /// Reads the input and makes its field; says which level was taken.
    io::Image read(FullLevelSet2D& levelSet) const;
    io::Image read(FullLevelSet3D& levelSet) const;

    /// The same, with what there is to say about the level.
    io::Image read(FullLevelSet2D& levelSet, std::string& note) const;
    io::Image read(FullLevelSet3D& levelSet, std::string& note) const;

    /// The same for a command that needs an outline: ends with status 4 where there is none.
    io::Image readWithCrossing(FullLevelSet2D& levelSet) const;
    io::Image readWithCrossing(FullLevelSet3D& levelSet) const;

    /// Prints a line unless the user wants quiet.
    template <class... Args>
    void report(fmt::format_string<Args...> line, Args&&... args) const {
        if (!quiet) fmt::print("{}\n", fmt::format(line, std::forward<Args>(args)...));
    }

 private:
    mutable std::shared_ptr<InputFile> file_;
};

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
