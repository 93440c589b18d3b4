#include "field_command.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "description.h"
#include "io/format_name.h"
#include "parsing.h"
#include "record.h"

namespace quorbin::tool {

namespace {

/// Of options that a command has alone.
constexpr char kOwnGroup[] = "Method";

}  // namespace

void FieldCommand::addInput(CLI::App& command, const std::string& name) {
    addPicture(command, name);
    command.option_defaults()->group("Level");
    auto* level = command.add_option_function<double>(
        "--level",
        [this](double value) {
            requireUsableLevel(value);
            field.level = value;
        },
        "grey value of the outline (default: a mask's own, else Otsu's threshold), or value of a field");
    auto* inside =
        addInside(command, "what is inside: above (a picture's default) or below the level (a field's)");
    auto* between =
        command
            .add_option_function<std::string>(
                "--between", [this](const std::string& text) { field.between = parseRange(text); },
                "inside is what has a value of this range")
            ->type_name("LOW,HIGH")
            ->excludes(level)
            ->excludes(inside);
    command
        .add_option_function<std::string>(
            "--label",
            [this](const std::string& text) {
                if (text == "all")
                    everyLabel = true;
                else
                    field.label = parseLabel(text);
            },
            "inside is what has this whole number for a value; all: each but 0 in turn, into files named "
            "OUTPUT-1, "
            "OUTPUT-2 ... before the ending. Outlines and meshes of neighbours fit together without gaps or "
            "overlaps, until they are smoothed or simplified")
        ->type_name("N|all")
        ->excludes(level)
        ->excludes(inside)
        ->excludes(between);
    command.option_defaults()->group(kOwnGroup);
}

CLI::Option* FieldCommand::addInside(CLI::App& command, const std::string& description) {
    return command
        .add_option_function<std::string>(
            "--inside", [this](const std::string& side) { field.insideAbove = side == "above"; }, description)
        ->check(CLI::IsMember({"above", "below"}))
        ->type_name("above|below");
}

void FieldCommand::addPicture(CLI::App& command, const std::string& name) {
    commandName = command.get_name();
    command.option_defaults()->group("Input");
    auto* option = command.add_option(
        name, inputs, fmt::format("a picture ({}); - for standard input", namesOfReadable(Kind::kPicture)));
    if (option->get_positional())
        option->required();
    else
        option->expected(1)->type_name("FILE");
    addReading(command, reading);
    command
        .add_option_function<std::string>(
            "--spacing", [this](const std::string& text) { field.spacing = parseSpacing(text); },
            "units between samples along x and y, and z of a volume (default: the file's own, else 1)")
        ->type_name("DX,DY[,DZ]");
    command.option_defaults()->group("General");
    command.add_flag("-q,--quiet", quiet, "print nothing but errors");
    command.add_flag("--json", json, "print one JSON object: what was read, results, files written, seconds");
    command.option_defaults()->group(kOwnGroup);
}

void FieldCommand::addVolume(CLI::App& command) {
    command.option_defaults()->group("Input");
    auto layout = std::make_shared<RawLayout>();
    auto* type =
        command
            .add_option("--type", layout->type,
                        "of the samples of a file without a header, little-endian: uint8, int16, float32 ...")
            ->check(CLI::IsMember({"int8", "int16", "int32", "int64", "uint8", "uint16", "uint32", "uint64",
                                   "float16", "float32", "float64"}))
            ->type_name("TYPE");
    // Defined after the type, so that this is known when its callback runs.
    auto* size = command
                     .add_option_function<std::string>(
                         "--size",
                         [this, layout](const std::string& text) {
                             layout->size = parseSize(text);
                             raw = *layout;
                         },
                         "of the volume in such a file, x fastest")
                     ->type_name("W,H,D")
                     ->needs(type);
    type->needs(size);
    CLI::Option& inputOption = *command.get_option("INPUT");
    inputOption.description(
        fmt::format("a picture ({}) or a volume ({}, raw); or a folder of DICOM files, taken "
                    "by place; - for standard input",
                    namesOfReadable(Kind::kPicture), namesOfReadable(Kind::kVolume)));
    command.option_defaults()->group(kOwnGroup);
}

void FieldCommand::addPixels(CLI::App& command) {
    command.option_defaults()->group("Level");
    command.add_flag(
        "--pixels", asPixels,
        "of a mask, take the outline along its samples as they are, and not a smooth one between "
        "them");
    command.option_defaults()->group(kOwnGroup);
}

void FieldCommand::addOutput(CLI::App& command, bool required, std::initializer_list<Kind> kinds) {
    takesOutput = true;
    command.option_defaults()->group("Output");
    std::string formats;
    std::vector<std::string> endings;
    for (const Kind kind : kinds) {
        formats += (formats.empty() ? "" : "; of a volume ") + endingsOfWritable(kind);
        for (std::string& ending : listOfWritable(kind))
            if (std::find(endings.begin(), endings.end(), ending) == endings.end())
                endings.push_back(std::move(ending));
    }
    command
        .add_option("-o,--output", output,
                    "file to write; its ending tells the format (none: the usual one); - for standard "
                    "output; of several inputs, or with a slash at its end, a folder")
        ->type_name("FILE")
        ->required(required);
    command.add_option("--format", format, fmt::format("instead of the ending: {}", formats))
        ->type_name("FORMAT")
        ->check(knownValues(endings));
    command.add_flag("-f,--force", force, "overwrite an existing file");
    const auto isField = [](Kind kind) { return kind == Kind::kPicture || kind == Kind::kVolume; };
    if (std::any_of(kinds.begin(), kinds.end(), isField))
        command.add_flag("--float", asFloat, "write fields as float32, in " + endingsOfFloats());
    command.option_defaults()->group(kOwnGroup);
}

void FieldCommand::say(std::string line) const {
    if (quiet || json) return;
    if (!said) return fmt::print("{}\n", line);
    if (line.rfind(input + ": ", 0) == 0) line.erase(0, input.size() + 2);
    said->push_back(std::move(line));
}

std::string FieldCommand::outputPath(const std::string& usual) const {
    if (batch->folder.empty()) return output;
    std::string stem = input == "-" ? "stdin" : input.substr(input.find_last_of('/') + 1);
    const auto dropEnding = [&] {
        if (const std::size_t dot = stem.find_last_of('.'); dot != std::string::npos && dot > 0)
            stem.erase(dot);
    };
    const bool isCompressed = file().hasEnding("gz");
    dropEnding();
    if (isCompressed) dropEnding();
    std::string path = batch->folder + "/" + stem + "." + (format.empty() ? usual : format);
    if (labelInFolder_) path = withSuffix(path, fmt::format("{}", *labelInFolder_));
    if (!batch->paths.insert(path).second)
        refuse("{}: would be written to {}, as another input; give it another name", input, path);
    return path;
}

InputFile& FieldCommand::file() const {
    if (!file_) file_ = std::make_shared<InputFile>(input);
    return *file_;
}

bool FieldCommand::isGivenVolume() const {
    if (raw) return true;
    if (file().hasEnding("raw"))
        refuse("{}: has no header; say by --size and --type what its samples are", input);
    return isVolume(file(), reading);
}

void FieldCommand::nameAfterLabel(double label) {
    if (output.empty()) return;
    if (!batch->folder.empty()) {
        labelInFolder_ = label;
        return;
    }
    if (output == "-") refuse("--label all: writes a file a label; name them by -o");
    if (output.back() == '/' || std::filesystem::is_directory(output))
        refuse("{}: is a folder; name a file, whose name all those of --label all begin with", output);
    output = withSuffix(output, fmt::format("{}", label));
}

void FieldCommand::requireNewFiles() const {
    if (!output.empty() && batch->folder.empty()) OutputFile(output, force);
}

std::vector<double> FieldCommand::keepLabels() {
    if (!raw) isGivenVolume();  // refuses raw samples of which no more is said
    kept_ = std::make_shared<io::Image>(image());
    try {
        std::vector<double> labels = labelsOf(samplesOf(kept_->samples));
        if (labels.empty()) throw Failure(kNoCrossing, "has no label but 0; choose another input");
        return labels;
    } catch (const Failure& failure) {
        throw naming(input, failure);
    }
}

std::string withSuffix(const std::string& path, const std::string& suffix) {
    const std::string ending = formatName(path, "", "");
    const std::size_t stem = path.size() - (ending.empty() ? 0 : ending.size() + 1);
    return path.substr(0, stem) + "-" + suffix + path.substr(stem);
}

std::shared_ptr<Record> recordOfLabel(Record& record, double label) { return record.ofLabel(label); }

io::Image readPicture(const std::string& path, const ReadOptions& reading) {
    InputFile file(path);
    if (isVolume(file, reading)) refuse("{}: is a volume; quorbin slice takes a plane of it", path);
    return readImage(file, reading);
}

void requireUsableLevel(double level) {
    if (!(std::abs(level) <= kLargestSample))
        refuse("--level: give a number from {} to {}", -kLargestSample, kLargestSample);
}

void requirePng(const std::string& picture, const std::string& output) {
    if (!picture.empty() && (picture == output || formatName(picture, "", "") != "png"))
        refuse("--picture {}: name a file that ends in .png, another than the output", picture);
}

std::string counted(std::size_t count, const std::string& noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

void makeFolder(const std::string& path) {
    if (mkdir(path.c_str(), 0777) != 0 && errno != EEXIST)
        refuse("{}: cannot be made a folder ({}); choose another", path, std::strerror(errno));
}

void writeFrame(const std::string& folder, int number, const PictureDocument& document, bool force) {
    OutputFile file(fmt::format("{}/{:06}.png", folder, number), force);
    outputFormat(Kind::kPicture, "", "png", "").writePicture(document, file);
    file.commit();
}

void setUp(CLI::App& app) {
    app.formatter_fn([](const CLI::App* asked, const std::string&, CLI::AppFormatMode) {
        return helpOf(describe(*asked));
    });
    app.set_help_flag("-h,--help", "print this help")->group("General");
    app.set_version_flag("-V,--version", "quorbin " QUORBIN_VERSION, "print the version")->group("General");
    app.option_defaults()->group(kOwnGroup);
}

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& example,
                     const std::string& summary, std::function<void()> body) {
    CLI::App& command = *app.add_subcommand(name, "Example: quorbin " + example + "\n\n" + summary);
    setUp(command);
    command.callback(std::move(body));
    return command;
}

}  // namespace quorbin::tool
