#include <algorithm>

#include <fmt/core.h>

#include "description.h"

namespace quorbin::tool {

namespace {

/// Calls visit(option) for each of a command.
template <class Visit>
void forEachOption(const DescribedCommand& command, Visit visit) {
    for (const DescribedGroup& group : command.groups)
        for (const DescribedOption& option : group.options) visit(option);
}

std::string namesOfCommands(const DescribedCommand& tool) {
    std::string names;
    for (const DescribedCommand& command : tool.commands) names += (names.empty() ? "" : " ") + command.name;
    return names;
}

std::string dashedNames(const DescribedCommand& command) {
    std::string names;
    forEachOption(command, [&](const DescribedOption& option) {
        if (!option.isPositional) names += (names.empty() ? "" : " ") + CLI::detail::join(option.names, " ");
    });
    return names;
}

/// Within single quotes, in what _arguments of zsh reads.
std::string inZsh(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\'')
            result += "'\\''";
        else if (c == '[' || c == ']' || c == ':' || c == '\\')
            result += std::string("\\") + c;
        else
            result += c == '\n' ? ' ' : c;
    }
    return result;
}

std::string zshOption(const DescribedOption& option) {
    const std::string message = inZsh(option.isPositional ? option.names.front() : option.value);
    const std::string action = option.isPath()          ? "_files"
                               : option.choices.empty() ? ""
                                                        : "(" + CLI::detail::join(option.choices, " ") + ")";
    if (option.isPositional) return fmt::format("'{}:{}:{}'", option.takesMany ? "*" : "1", message, action);
    std::string text = "[" + inZsh(option.text) + "]";
    if (!option.value.empty()) text += ":" + message + ":" + action;
    if (option.names.size() == 1) return fmt::format("'{}{}'", option.names.front(), text);
    return fmt::format("'({})'{{{}}}'{}'", CLI::detail::join(option.names, " "),
                       CLI::detail::join(option.names, ","), text);
}

}  // namespace

std::string bashCompletion(const DescribedCommand& tool) {
    std::string values, options;
    for (const DescribedCommand& command : tool.commands) {
        forEachOption(command, [&](const DescribedOption& option) {
            if (option.isPositional && !option.choices.empty())
                options += fmt::format("        {}) words=\"{}\" ;;\n", command.name,
                                       CLI::detail::join(option.choices, " "));
            if (option.isPositional || option.value.empty()) return;
            std::string patterns;
            for (const std::string& name : option.names)
                patterns += (patterns.empty() ? "" : "|") + command.name + "," + name;
            const std::string action =
                option.isPath() ? "files=yes" : "words=\"" + CLI::detail::join(option.choices, " ") + "\"";
            values += fmt::format("        {}) {} ;;\n", patterns, action);
        });
        if (options.find(" " + command.name + ")") == std::string::npos)
            options +=
                fmt::format("        {}) if [[ $current == -* ]]; then words=\"{}\"; else files=yes; fi ;;\n",
                            command.name, dashedNames(command));
    }
    return fmt::format(
        R"(# Completes command lines of quorbin. Generated from its options.
_quorbin() {{
    local current=${{COMP_WORDS[COMP_CWORD]}} last=${{COMP_WORDS[COMP_CWORD - 1]}}
    local command=${{COMP_WORDS[1]}} words= files= value=yes
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "{} {}" -- "$current")
        return
    fi
    case $command,$last in
{}        *) value= ;;
    esac
    [[ $value ]] || case $command in
{}    esac
    COMPREPLY=()
    if [[ $files ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    elif [[ $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    fi
}}
complete -o filenames -F _quorbin quorbin
)",
        namesOfCommands(tool), dashedNames(tool), values, options);
}

std::string zshCompletion(const DescribedCommand& tool) {
    std::string commands, cases;
    for (const DescribedCommand& command : tool.commands) {
        commands += fmt::format("        '{}:{}'\n", command.name, inZsh(firstSentence(command.summary)));
        cases += fmt::format("        {})\n            _arguments -s", command.name);
        forEachOption(command, [&](const DescribedOption& option) {
            cases += " \\\n                " + zshOption(option);
        });
        cases += "\n            ;;\n";
    }
    std::string own;
    forEachOption(tool,
                  [&](const DescribedOption& option) { own += " \\\n            " + zshOption(option); });
    return fmt::format(
        R"(#compdef quorbin
# Completes command lines of quorbin. Generated from its options.
_quorbin() {{
    local -a commands=(
{}    )
    if ((CURRENT == 2)); then
        _describe command commands
        _arguments -s{}
        return
    fi
    shift words
    ((CURRENT--))
    case $words[1] in
{}    esac
}}
_quorbin "$@"
)",
        commands, own, cases);
}

}  // namespace quorbin::tool
