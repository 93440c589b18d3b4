#include "description.h"

#include <algorithm>
#include <sstream>

namespace quorbin::tool {

namespace {

/// What CLI11 gives as the type is followed by what each check says of itself.
std::string valueOf(const CLI::Option& option) {
    if (option.get_type_size() == 0) return "";
    const std::string type = option.get_type_name();
    return type.substr(0, type.find(':'));
}

std::vector<std::string> choicesOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const std::size_t start = type.find(":{");
    if (start == std::string::npos) return {};
    const std::size_t end = type.find('}', start);
    return CLI::detail::split(type.substr(start + 2, end - start - 2), ',');
}

std::string longNameOf(const CLI::Option& option) {
    return option.get_lnames().empty() ? option.get_name() : "--" + option.get_lnames().front();
}

std::string joined(const std::set<CLI::Option*>& options) {
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const CLI::Option* option : options) names.push_back(longNameOf(*option));
    std::sort(names.begin(), names.end());  // the set goes by addresses
    return CLI::detail::join(names, " or ");
}

DescribedOption describeOption(const CLI::Option& option) {
    DescribedOption described;
    described.isPositional = option.get_positional();
    if (described.isPositional)
        described.names = {option.get_name(true)};
    else
        for (const auto& [dashes, names] :
             {std::pair{"-", option.get_snames()}, std::pair{"--", option.get_lnames()}})
            for (const std::string& name : names) described.names.push_back(dashes + name);
    described.value = valueOf(option);
    described.choices = choicesOf(option);
    described.isRequired = option.get_required();
    described.takesMany = option.get_expected_max() > 1;
    described.text = option.get_description();
    if (!option.get_needs().empty()) described.text += "; with " + joined(option.get_needs());
    if (!option.get_excludes().empty()) described.text += "; not with " + joined(option.get_excludes());
    if (described.isRequired && !described.isPositional) described.text += "; required";
    return described;
}

std::string usageOf(const DescribedCommand& command) {
    std::string usage = "quorbin";
    if (!command.name.empty()) usage += " " + command.name;
    if (!command.commands.empty()) return usage + " COMMAND [OPTIONS]";
    std::string positional;
    for (const DescribedGroup& group : command.groups)
        for (const DescribedOption& option : group.options) {
            if (!option.isPositional) continue;
            const std::string name = option.names.front() + (option.takesMany ? " ..." : "");
            positional += option.isRequired ? " " + name : " [" + name + "]";
        }
    return usage + " [OPTIONS]" + positional;
}

}  // namespace

CLI::Validator knownValues(const std::vector<std::string>& values) {
    return CLI::Validator([](std::string&) { return std::string(); },
                          "{" + CLI::detail::join(values, ",") + "}");
}

bool DescribedOption::isPath() const {
    return value == "FILE" || value == "DIR" || (isPositional && names.front() == "INPUT");
}

DescribedCommand describe(const CLI::App& app) {
    DescribedCommand command;
    if (app.get_parent() != nullptr) command.name = app.get_name();
    const std::string text = app.get_description();
    const std::size_t end = text.find("\n\n");
    constexpr std::size_t kWordExample = 9;  // "Example: "
    command.example = text.substr(kWordExample, end - kWordExample);
    command.summary = text.substr(end + 2);
    // CLI11 puts --help and --version first, where readers look last.
    std::vector<std::string> names = app.get_groups();
    std::rotate(names.begin(), std::find(names.begin(), names.end(), "General"), names.end());
    const auto general = std::find(names.begin(), names.end(), "General");
    if (general != names.end()) std::rotate(general, general + 1, names.end());
    for (const std::string& name : names) {
        if (name.empty()) continue;
        DescribedGroup group{name, {}};
        for (const CLI::Option* option :
             app.get_options([&](const CLI::Option* o) { return o->get_group() == name; }))
            group.options.push_back(describeOption(*option));
        std::stable_partition(group.options.begin(), group.options.end(),
                              [](const DescribedOption& option) { return option.isPositional; });
        if (!group.options.empty()) command.groups.push_back(std::move(group));
    }
    for (const CLI::App* child : app.get_subcommands([](const CLI::App*) { return true; }))
        command.commands.push_back(describe(*child));
    command.usage = usageOf(command);
    return command;
}

std::string firstSentence(const std::string& summary) {
    std::istringstream words(summary);
    std::string sentence, word;
    int depth = 0;  // of parentheses, which are left out
    while (words >> word) {
        const auto closed = static_cast<int>(std::count(word.begin(), word.end(), ')'));
        depth += static_cast<int>(std::count(word.begin(), word.end(), '('));
        const bool isShown = depth == 0;
        depth -= closed;
        const bool isLast = depth == 0 && (word.back() == '.' || word.back() == ':');
        if (isShown)
            sentence += (sentence.empty() ? "" : " ") + word.substr(0, word.size() - (isLast ? 1 : 0));
        if (isLast) break;
    }
    return sentence;
}

std::string wrapped(const std::string& text, std::size_t indentation, std::size_t width) {
    const std::string margin(indentation, ' ');
    std::string lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find("\n\n", start), text.size());
        std::istringstream words(text.substr(start, end - start));
        std::string line, word;
        if (!lines.empty()) lines += "\n";
        while (words >> word) {
            if (!line.empty() && indentation + line.size() + 1 + word.size() > width) {
                lines += margin + line + "\n";
                line.clear();
            }
            line += (line.empty() ? "" : " ") + word;
        }
        if (!line.empty()) lines += margin + line + "\n";
        start = end + 2;
    }
    return lines;
}

std::string helpOf(const DescribedCommand& command) {
    constexpr std::size_t kColumn = 26;
    std::string help = "Example: " + command.example + "\n\n" + wrapped(command.summary, 0) +
                       "\nUsage: " + command.usage + "\n";
    const auto add = [&](const std::string& left, const std::string& text) {
        const std::string right = wrapped(text, kColumn);
        if (left.size() + 4 > kColumn)
            help += "  " + left + "\n" + right;
        else
            help += "  " + left + std::string(kColumn - 2 - left.size(), ' ') + right.substr(kColumn);
    };
    if (!command.commands.empty()) help += "\nCommands:\n";
    for (const DescribedCommand& child : command.commands) add(child.name, firstSentence(child.summary));
    for (const DescribedGroup& group : command.groups) {
        help += "\n" + group.name + ":\n";
        for (const DescribedOption& option : group.options) {
            std::string left = CLI::detail::join(option.names, ", ");
            if (option.isPositional)
                left += option.takesMany ? " ..." : "";
            else if (!option.value.empty())
                left += " " + option.value;
            add(left, option.text);
        }
    }
    return help;
}

}  // namespace quorbin::tool
