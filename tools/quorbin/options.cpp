#include "options.h"

#include <cmath>

#include "contour_tracing.h"
#include "failure.h"
#include "formats/readers.h"

namespace {

Spacing parseSpacing(const std::string& text) {
    Spacing spacing;
    char rest = 0;
    const int read =
        std::sscanf(text.c_str(), "%lf,%lf%c", &spacing.x, &spacing.y, &rest);  // NOLINT(cert-err34-c)
    const auto isUsable = [](double h) { return h > 1e-100 && h < 1e100; };
    if (read != 2 || !isUsable(spacing.x) || !isUsable(spacing.y))
        refuse("--spacing {}: is no spacing; give two numbers from 1e-100 to 1e100, as in 0.5,0.5", text);
    return spacing;
}

}  // namespace

void FieldCommand::addInput(CLI::App& command) {
    addPicture(command);
    command.add_option_function<double>(
        "--level",
        [this](double level) {
            if (!std::isfinite(level)) refuse("--level: give a number");
            field.level = level;
        },
        "grey value of the outline (default: a mask's own, else Otsu's threshold), or value of a field");
    command
        .add_option_function<std::string>(
            "--inside", [this](const std::string& side) { field.insideAbove = side == "above"; },
            "what is inside: above (a picture's default) or below the level (a field's)")
        ->check(CLI::IsMember({"above", "below"}))
        ->type_name("above|below");
}

void FieldCommand::addPicture(CLI::App& command) {
    command.add_option("INPUT", input, "PNG, PGM, NPY (2D) or FL2D file; - for standard input")->required();
    command.add_option("--channel", channel, "what to read of a picture in colour")
        ->check(CLI::IsMember({"r", "g", "b", "luma"}))
        ->type_name("r|g|b|luma");
    command
        .add_option_function<std::string>(
            "--spacing", [this](const std::string& text) { field.spacing = parseSpacing(text); },
            "units between samples along x and y (default: the file's own, else 1,1)")
        ->type_name("DX,DY");
    command.add_flag("--quiet,-q", quiet, "print nothing but errors");
}

void FieldCommand::addOutput(CLI::App& command, bool required) {
    command
        .add_option("-o,--output", output,
                    "file to write; its ending tells the format (none: the usual one); - for standard output")
        ->required(required);
    command.add_option("--format", format,
                       "instead of the ending: fl2d, npy, svg, geojson, csv, png, pdf or mask");
    command.add_flag("--force,-f", force, "overwrite an existing file");
}

Raster FieldCommand::read(FullLevelSet2D& levelSet) const {
    Raster raster = readRaster(input, channel);
    std::string note;
    try {
        makeField(raster, field, levelSet, note);
    } catch (const Failure& failure) {
        throw Failure(failure.status, fmt::format("{}: {}", input, failure.what()));
    }
    if (!note.empty()) report("{}: {}", input, note);
    return raster;
}

Raster FieldCommand::readWithCrossing(FullLevelSet2D& levelSet) const {
    Raster raster = read(levelSet);
    if (!hasCrossing(levelSet))
        throw Failure(
            kNoCrossing,
            fmt::format("{}: has no outline, all of it is {}; {}", input,
                        levelSet.data()[0] <= 0 ? "inside" : "outside",
                        raster.isField
                            ? "floating-point values are a field, inside where ≤ 0, unless you give --level"
                            : "choose another --level or another picture"));
    return raster;
}

Result::Result(const FieldCommand& command, const std::string& usualFormat)
    : Result(command, writerFor(command.output, command.format, usualFormat)) {}

Result::Result(const FieldCommand& command, const Writer& writer)
    : writer_(writer), file_(command.output, command.force) {}

void Result::write(const Document& document) {
    writer_.write(document, file_);
    file_.commit();
}

std::string counted(std::size_t count, const std::string& noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& example,
                     const std::string& summary, std::function<void()> body) {
    CLI::App& command = *app.add_subcommand(name, "Example: quorbin " + example + "\n\n" + summary);
    command.set_version_flag("--version", "quorbin " QUORBIN_VERSION);
    command.callback(std::move(body));
    return command;
}
