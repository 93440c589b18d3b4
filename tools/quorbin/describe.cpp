// Writes manual pages and completion into a folder: man1, completions and site-functions, which are
// installed. With --formats it prints the table of formats as Markdown.

#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <fmt/core.h>

#include "cli/app.h"
#include "cli/description.h"
#include "cli/format_table.h"

namespace {

using namespace quorbin::tool;

void write(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    if (!file.write(text.data(), static_cast<std::streamsize>(text.size())).flush())
        throw std::runtime_error(path.string() + ": could not be written");
}

void writeAll(const std::filesystem::path& folder) {
    const DescribedCommand tool = describe(*makeApp());
    std::filesystem::remove_all(folder);
    write(folder / "man1/quorbin.1", manPageOf(tool, tool));
    for (const DescribedCommand& command : tool.commands)
        write(folder / ("man1/quorbin-" + command.name + ".1"), manPageOf(command, tool));
    write(folder / "site-functions/_quorbin", zshCompletion(tool));
    write(folder / "completions/quorbin", bashCompletion(tool));
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 2) throw std::runtime_error("give a folder to write to, or --formats");
        if (std::string(argv[1]) == "--formats")
            fmt::print("{}", markdownOfFormats());
        else
            writeAll(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "quorbin_describe: {}\n", error.what());
        return 1;
    }
}
