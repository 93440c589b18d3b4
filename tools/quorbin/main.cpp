#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "cli/app.h"
#include "cli/failure.h"
#include "io/output_file.h"

namespace quorbin::tool {

namespace {

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
        throw io::Failure(io::kFailed, "standard output: could not be written");
}

std::string firstLine(std::string text) {
    text.erase(std::min(text.find('\n'), text.size()));
    return text;
}

void parse(CLI::App& app, int argc, char** argv) {
    if (argc > 1 && argv[1][0] != '-' &&
        app.get_subcommands([&](CLI::App* command) { return command->check_name(argv[1]); }).empty())
        io::refuse("{}: is no command; --help lists them", argv[1]);
    try {
        app.parse(wordsOf(argc, argv));
    } catch (const CLI::Success& success) {  // --help, --version
        app.exit(success);
    } catch (const CLI::ParseError& error) {
        io::refuse("{}; --help shows how it is used", firstLine(error.what()));
    }
    flushStandardOutput();
}

int runTool(int argc, char** argv) {
    try {
        const auto failure = failureOf([&] { parse(*makeApp(), argc, argv); });
        if (!failure) return io::kDone;
        complain(failure->what());
        return failure->status;
    } catch (const Failures& failures) {
        std::fflush(stdout);
        for (const std::string& line : failures.lines) complain(line);
        return failures.status;
    }
}

}  // namespace

}  // namespace quorbin::tool

int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): only if complaining fails too
    quorbin::io::cleanUpWhenInterrupted();
    return quorbin::tool::runTool(argc, argv);
}
