#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "cli/field_command.h"
#include "io/output_file.h"

namespace quorbin::tool {

namespace {

int complain(ExitStatus status, const std::string& line) {
    // A name may hold line breaks and worse; the complaint stays one line.
    std::string text = "quorbin: " + line;
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ') c = '?';
    std::fputs((text + "\n").c_str(), stderr);
    return status;
}

/// The words of the command line. "--reinit every 5" reads better than "--reinit 5" and means the same.
std::vector<std::string> wordsOf(int argc, char** argv) {
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i)
        if (words.empty() || words.back() != "--reinit" || std::string(argv[i]) != "every")
            words.emplace_back(argv[i]);
    return {words.rbegin(), words.rend()};  // CLI11 takes them from the back
}

void flushStandardOutput() {
    if (std::fflush(stdout) != 0 || !std::cout.flush())
        throw Failure(kFailed, "standard output: could not be written");
}

std::string firstLine(std::string text) {
    text.erase(std::min(text.find('\n'), text.size()));
    return text;
}

int runTool(int argc, char** argv) {
    CLI::App app(
        "Example: quorbin contour photo.png -o outline.svg\n\n"
        "Finds the outlines in pictures and makes them smooth, by level sets.",
        "quorbin");
    app.set_version_flag("--version", "quorbin " QUORBIN_VERSION);
    app.require_subcommand(1);
    for (auto* add : {addInfo, addDistance, addSmooth, addSegment, addContour, addMask, addMesh, addSlice,
                      addConvert, addDemo})
        add(app);
    try {
        if (argc > 1 && argv[1][0] != '-' &&
            app.get_subcommands([&](CLI::App* command) { return command->check_name(argv[1]); }).empty())
            refuse("{}: is no command; --help lists them", argv[1]);
        try {
            app.parse(wordsOf(argc, argv));
        } catch (const CLI::Success& success) {  // --help, --version
            app.exit(success);
        }
        flushStandardOutput();
        return kDone;
    } catch (const CLI::ParseError& error) {
        return complain(kBadUsage, firstLine(error.what()) + "; --help shows how it is used");
    } catch (const Failure& failure) {
        return complain(failure.status, failure.what());
    } catch (const std::bad_alloc&) {
        return complain(kFailed, "there is not enough memory for this; take a smaller picture or volume");
    } catch (const std::exception& error) {
        return complain(kFailed, error.what());
    }
}

}  // namespace

}  // namespace quorbin::tool

int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): only if complaining fails too
    quorbin::io::cleanUpWhenInterrupted();
    return quorbin::tool::runTool(argc, argv);
}
