#include <cmath>

#include "field_command.h"
#include "io/channels.h"

namespace quorbin::tool {

CLI::Option* addAxis(CLI::App& command, std::function<void(std::size_t)> take) {
    return command
        .add_option_function<std::string>(
            "--axis",
            [take = std::move(take)](const std::string& name) { take(std::string("xyz").find(name)); },
            "across which planes of a volume lie (default z)")
        ->check(CLI::IsMember({"x", "y", "z"}))
        ->type_name("x|y|z");
}

void addReading(CLI::App& command, ReadOptions& reading) {
    command
        .add_option_function<std::string>(
            "--channel",
            [&reading](const std::string& text) {
                if (!isChannelName(text))
                    refuse("--channel {}: is no channel; give r, g, b, a, luma or a number from 0", text);
                reading.channel = text;
            },
            "what to read of colours, whose luminance is read else, or of several channels")
        ->type_name("r|g|b|a|luma|N");
    command
        .add_option_function<long long>(
            "--frame",
            [&reading](long long frame) {
                if (frame < 0) refuse("--frame {}: is no frame; give a number from 0", frame);
                reading.frame = frame;
            },
            "which of the pictures or volumes of a file in time, from 0")
        ->type_name("N");
    command
        .add_option_function<long long>(
            "--series",
            [&reading](long long series) {
                if (series < 0) refuse("--series {}: is no series; give a number from 0", series);
                reading.series = series;
            },
            "which series of a folder of DICOM files that has several, from 0")
        ->type_name("N");
    command
        .add_option_function<double>(
            "--nan",
            [&reading](double value) {
                if (!std::isfinite(value)) refuse("--nan {}: give a number that is finite", value);
                reading.nan = value;
            },
            "what to take for values that are not finite (default: refuse them)")
        ->type_name("VALUE");
}

}  // namespace quorbin::tool
