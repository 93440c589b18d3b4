#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <CLI/CLI.hpp>

#include "fields/from_samples.h"
#include "io/failure.h"
#include "io/format.h"

// What the tool is put together from.
using namespace quorbin::io;
using namespace quorbin::fields;

namespace quorbin::tool {

class Record;

/// What the inputs of one command line share.
struct Batch {
    std::string folder;           ///< where results go under the names of their inputs, if anywhere
    std::set<std::string> paths;  ///< that results have
    bool hasMany = false;
};

/// What most commands are given: a file to read, how it becomes a field, and where the result goes.
struct FieldCommand {
    std::string commandName;
    std::vector<std::string> inputs;
    std::string input;  ///< the one under way
    std::string output;
    std::string format;
    ReadOptions reading;
    FieldOptions field;
    std::optional<RawLayout> raw;
    bool takesOutput = false;   ///< addOutput
    bool everyLabel = false;    ///< runForLabels
    bool needsSamples = false;  ///< besides the field that is made of them
    bool asPixels = false;      ///< smoothIfMask leaves masks as they are
    bool force = false;
    bool quiet = false;
    bool asFloat = false;
    bool json = false;
    std::shared_ptr<Batch> batch;
    std::shared_ptr<Record> record;                  ///< of the input under way
    std::shared_ptr<std::vector<std::string>> said;  ///< said of it, where it is one of many

    /// The input, opened at the first call.
    InputFile& file() const;

    /// The input is a positional one that may be many, or an option.
    void addInput(CLI::App& command, const std::string& name = "INPUT");
    /// The same without what makes a field of the picture.
    void addPicture(CLI::App& command, const std::string& name = "INPUT");
    /// --inside alone, which addInput has too.
    CLI::Option* addInside(CLI::App& command, const std::string& description);
    /// What a command that takes volumes too is given besides.
    void addVolume(CLI::App& command);
    /// --pixels, of a command that calls smoothIfMask.
    void addPixels(CLI::App& command);
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

    /// The same of a picture whose field is never held: its rows become the field's as they are read.
    /// Refuses volumes.
    FieldRows readRows(io::PackedPicture& picture, std::string& note, bool needsCrossing) const;

    /// The same, with what there is to say about the level.
    io::Image read(FullLevelSet2D& levelSet, std::string& note) const;
    io::Image read(FullLevelSet3D& levelSet, std::string& note) const;

    /// A plane of a volume with its field; no more of the file is read where that is enough, which it is
    /// where the level is known. needsRange asks for the lowest and the highest value of all that are not a
    /// field's.
    struct PlaneOfVolume {
        io::Plane plane;
        FullLevelSet2D field;
        std::optional<std::pair<double, double>> range;
    };
    PlaneOfVolume readPlane(const io::PlaneChoice& choice, bool needsRange) const;

    /// Puts on record what was read, and at which level, if there is one.
    void recordReading(const io::Image& image, const std::array<double, 3>& spacing,
                       const std::optional<double>& level, const std::string& note) const;

    /// The same for a command that needs an outline: ends with status 4 where there is none.
    io::Image readWithCrossing(FullLevelSet2D& levelSet) const;
    io::Image readWithCrossing(FullLevelSet3D& levelSet) const;

    /// The field of another file, read as this one is: a picture beside a picture, a volume beside a volume.
    template <class Grid>
    void readOther(const std::string& path, Grid& levelSet) const;

    /// Makes the field of a mask a signed distance to a smooth outline between its samples, and says so.
    template <class Grid>
    void smoothIfMask(Grid& levelSet) const;

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
        say(fmt::format(line, std::forward<Args>(args)...));
    }

    /// Where the result goes; usual is the ending that it has in a folder.
    std::string outputPath(const std::string& usual) const;

 private:
    void say(std::string line) const;
    io::PackedPicture packedPicture() const;

    mutable std::shared_ptr<InputFile> file_;
    std::shared_ptr<const io::Image> kept_;
    std::optional<double> labelInFolder_;  ///< whose result it is, where that goes into a folder
};

extern template void FieldCommand::readOther(const std::string&, FullLevelSet2D&) const;
extern template void FieldCommand::readOther(const std::string&, FullLevelSet3D&) const;
extern template void FieldCommand::smoothIfMask(FullLevelSet2D&) const;
extern template void FieldCommand::smoothIfMask(FullLevelSet3D&) const;

/// The path with something before its ending: a-3.ply.
std::string withSuffix(const std::string& path, const std::string& suffix);

/// The part of a record that is of a label.
std::shared_ptr<Record> recordOfLabel(Record& record, double label);

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
            Command one = commandFor(label);
            one.record = recordOfLabel(*command.record, label);
            one.run();
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
    /// One of several of a command, of a format that the command was given.
    Result(const FieldCommand& command, Kind kind, const Format& format, const std::string& path);
    const Format& format() const { return format_; }
    void write(PictureDocument document);
    void write(VolumeDocument document);
    void write(const OutlineDocument& document);
    void write(const StackDocument& stack);
    void write(const MeshDocument& mesh);

 private:
    void requireNumbers(const double* values, std::size_t count) const;
    void finish();

    const Format& format_;
    std::string input_;
    OutputFile file_;
    bool asFloat_;
    Record& record_;
};

/// The format in which a command writes.
const Format& formatOf(const FieldCommand& command, Kind kind, const std::string& usual);

/// Adds --axis, which is x, y or z and becomes 0, 1 or 2.
CLI::Option* addAxis(CLI::App& command, std::function<void(std::size_t)> take);

/// Adds the options of what is read of a file.
void addReading(CLI::App& command, ReadOptions& reading);

/// Reads a picture; refuses a volume.
io::Image readPicture(const std::string& path, const ReadOptions& reading);

/// Refuses a level that makes values too large to work with.
void requireUsableLevel(double level);

/// Refuses a file for a picture beside the output, if one is named, that is not PNG or is the output.
void requirePng(const std::string& picture, const std::string& output);

/// "1 polygon", "2 polygons".
std::string counted(std::size_t count, const std::string& noun);

/// Makes a folder that is not there.
void makeFolder(const std::string& path);

/// Draws a field as a PNG file into a folder of numbered ones.
void writeFrame(const std::string& folder, int number, const PictureDocument& document, bool force);

/// Gives an app what all have: -h, -V, and help by groups.
void setUp(CLI::App& app);

/// Adds a subcommand that runs body. Its help begins with the example.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& example,
                     const std::string& summary, std::function<void()> body);

/// One function a command; each adds itself to the tool.
void addInfo(CLI::App& app);
void addDistance(CLI::App& app);
void addSmooth(CLI::App& app);
void addOffset(CLI::App& app);
void addCombine(CLI::App& app);
void addMeasure(CLI::App& app);
void addPieces(CLI::App& app);
void addSegment(CLI::App& app);
void addContour(CLI::App& app);
void addMask(CLI::App& app);
void addMesh(CLI::App& app);
void addSlice(CLI::App& app);
void addConvert(CLI::App& app);
void addDemo(CLI::App& app);

}  // namespace quorbin::tool
