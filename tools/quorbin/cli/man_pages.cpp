#include <fmt/core.h>

#include "description.h"
#include "quorbin_version.h"

namespace quorbin::tool {

namespace {

/// Text as troff wants it: a dash is a hyphen unless escaped, and a line must not begin with a dot.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    }
    return !result.empty() && (result[0] == '.' || result[0] == '\'') ? "\\&" + result : result;
}

std::string paragraphs(const std::string& text) {
    std::string result, line;
    // Wrapped, so that no line of the source is too long.
    const std::string lines = wrapped(text, 0, 100);
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = lines.find('\n', start);
        line = lines.substr(start, end - start);
        result += (line.empty() ? ".PP" : escaped(line)) + "\n";
        start = end + 1;
    }
    return result;
}

std::string optionText(const DescribedOption& option) {
    std::string names;
    for (const std::string& name : option.names)
        names += (names.empty() ? "" : ", ") + ("\\fB" + escaped(name) + "\\fR");
    if (!option.isPositional && !option.value.empty()) names += " \\fI" + escaped(option.value) + "\\fR";
    return ".TP\n" + names + "\n" + paragraphs(option.text);
}

constexpr char kExitStatus[] =
    ".SH EXIT STATUS\n"
    ".TP\n0\nDone.\n"
    ".TP\n1\nFailed while working, for want of memory or of room on the disk.\n"
    ".TP\n2\nWrong usage, or an input that cannot be read.\n"
    ".TP\n4\nThere is no outline, or surface, where one is needed.\n"
    ".TP\n5\nA segmentation that was not still after its last step.\n"
    ".TP\n130\nInterrupted; nothing half written is left behind.\n"
    ".PP\nOf several inputs it is the largest of theirs.\n";

}  // namespace

std::string manPageOf(const DescribedCommand& command, const DescribedCommand& tool) {
    const bool isTool = command.name.empty();
    const std::string name = isTool ? "quorbin" : "quorbin-" + command.name;
    std::string title = name;
    for (char& c : title) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    std::string page = fmt::format(
        ".\\\" -*- coding: UTF-8 -*-\n.TH {} 1 \"\" \"quorbin {}\" \"User Commands\"\n.nh\n.ad l\n"
        ".SH NAME\n{} \\- {}\n.SH SYNOPSIS\n\\fB{}\\fR\n.SH DESCRIPTION\n{}",
        escaped(title), QUORBIN_VERSION, escaped(name), escaped(firstSentence(command.summary)),
        escaped(command.usage), paragraphs(command.summary));
    if (isTool) page += ".SH COMMANDS\n";
    for (const DescribedCommand& child : command.commands)
        page += ".TP\n\\fBquorbin " + child.name + "\\fR\n" + paragraphs(firstSentence(child.summary) + ".");
    page += ".SH OPTIONS\n";
    for (const DescribedGroup& group : command.groups) {
        if (command.groups.size() > 1) page += ".SS " + escaped(group.name) + "\n";
        for (const DescribedOption& option : group.options) page += optionText(option);
    }
    page += ".SH EXAMPLE\n.nf\n" + escaped(command.example) + "\n.fi\n";
    page += kExitStatus;
    page += ".SH SEE ALSO\n";
    std::string others;
    for (const DescribedCommand& other : tool.commands)
        if (other.name != command.name)
            others += (others.empty() && isTool ? "" : ",\n") + ("\\fBquorbin\\-" + other.name + "\\fR(1)");
    return page + (isTool ? "" : "\\fBquorbin\\fR(1)") + others + "\n";
}

}  // namespace quorbin::tool
