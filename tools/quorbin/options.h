#pragma once

#include <functional>
#include <string>

#include <fmt/core.h>
#include <CLI/CLI.hpp>

#include "field_from_samples.h"
#include "formats/volume.h"
#include "output/volume_writers.h"
#include "output/writers.h"

/// The names of the formats of commands that take pictures and volumes, for texts.
inline constexpr char kFieldFormats[] =
    "fl2d, npy, svg, geojson, csv, png, pdf or mask; of a volume fl3d, fr3d, nii, nii.gz, npy, tif, vti or "
    "raw";

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

    void addInput(CLI::App& command);
    /// The same without what makes a field of the picture.
    void addPicture(CLI::App& command);
    /// What a command that takes volumes too is given besides.
    void addVolume(CLI::App& command);
    void addOutput(CLI::App& command, bool required);
    /// The same for a command with formats of its own.
    void addOutput(CLI::App& command, bool required, const char* formats);

    /// Whether the input is a volume; refuses raw samples of which no more is said.
    bool isGivenVolume() const;

    /// Reads the input and makes its field; says which level was taken.
    Raster read(FullLevelSet2D& levelSet) const;
    Volume read(FullLevelSet3D& levelSet) const;

    /// The same, with what there is to say about the level.
    Raster read(FullLevelSet2D& levelSet, std::string& note) const;
    Volume read(FullLevelSet3D& levelSet, std::string& note) const;

    /// The same for a command that needs an outline: ends with status 4 where there is none.
    Raster readWithCrossing(FullLevelSet2D& levelSet) const;
    Volume readWithCrossing(FullLevelSet3D& levelSet) const;

    /// Prints a line unless the user wants quiet.
    template <class... Args>
    void report(fmt::format_string<Args...> line, Args&&... args) const {
        if (!quiet) fmt::print("{}\n", fmt::format(line, std::forward<Args>(args)...));
    }
};

/// The result of a command on its way out: path and format are looked at before the work begins.
class Result {
 public:
    Result(const FieldCommand& command, const std::string& usualFormat);
    Result(const FieldCommand& command, const Writer& writer);
    void write(const Document& document);

 private:
    const Writer& writer_;
    OutputFile file_;
};

class VolumeResult {
 public:
    explicit VolumeResult(const FieldCommand& command);
    void write(const VolumeDocument& document);

 private:
    const VolumeWriter& writer_;
    OutputFile file_;
};

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
