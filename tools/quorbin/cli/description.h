#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace quorbin::tool {

/// Tells completion the values of an option that are checked elsewhere.
CLI::Validator knownValues(const std::vector<std::string>& values);

/// An option as texts have it.
struct DescribedOption {
    std::vector<std::string> names;    ///< with their dashes; of a positional one its name alone
    std::string value;                 ///< FILE, x|y|z; empty for a flag
    std::vector<std::string> choices;  ///< all the values there are, where they are fixed
    std::string text;
    bool isPositional = false, isRequired = false, takesMany = false;

    /// Whether its value is the name of a file or a folder.
    bool isPath() const;
};

struct DescribedGroup {
    std::string name;
    std::vector<DescribedOption> options;
};

/// A command, or the tool itself, as help, manual pages and completion have it: made from its options, so
/// that none of them can be behind.
struct DescribedCommand {
    std::string name;  ///< empty for the tool
    std::string example;
    std::string summary;
    std::string usage;
    std::vector<DescribedGroup> groups;
    std::vector<DescribedCommand> commands;
};

DescribedCommand describe(const CLI::App& app);

/// The first sentence of a summary, without its full stop.
std::string firstSentence(const std::string& summary);

/// Paragraphs, between empty lines, broken anew into lines of at most width bytes after an indentation.
std::string wrapped(const std::string& text, std::size_t indentation, std::size_t width = 80);

/// The help of a command, 80 columns wide.
std::string helpOf(const DescribedCommand& command);

/// All that is in a manual page: quorbin.1, or quorbin-smooth.1.
std::string manPageOf(const DescribedCommand& command, const DescribedCommand& tool);

/// Scripts that complete a command line in bash and in zsh.
std::string bashCompletion(const DescribedCommand& tool);
std::string zshCompletion(const DescribedCommand& tool);

}  // namespace quorbin::tool
