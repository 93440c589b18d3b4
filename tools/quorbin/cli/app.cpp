#include "app.h"

#include "description.h"
#include "field_command.h"

namespace quorbin::tool {

namespace {

void addHelp(CLI::App& app) {
    auto name = std::make_shared<std::string>();
    CLI::App& command = addCommand(app, "help", "help smooth", "Says how a command is used.", [&app, name] {
        if (name->empty()) return fmt::print("{}", helpOf(describe(app)));
        const auto asked = app.get_subcommands([&](CLI::App* other) { return other->check_name(*name); });
        if (asked.empty()) refuse("{}: is no command; quorbin help lists them", *name);
        fmt::print("{}", helpOf(describe(*asked.front())));
    });
    std::vector<std::string> names;
    for (const CLI::App* other : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(other->get_name());
    command.add_option("COMMAND", *name, "the command; without one, the tool")->check(knownValues(names));
}

}  // namespace

std::unique_ptr<CLI::App> makeApp() {
    auto app = std::make_unique<CLI::App>(
        "Example: quorbin contour photo.png -o outline.svg\n\n"
        "Finds the outlines in pictures and makes them smooth, by level sets.",
        "quorbin");
    setUp(*app);
    app->require_subcommand(1);
    for (auto* add : {addInfo, addDistance, addSmooth, addSegment, addContour, addMask, addMesh, addSlice,
                      addOffset, addCombine, addMeasure, addPieces, addConvert, addDemo, addHelp})
        add(*app);
    return app;
}

}  // namespace quorbin::tool
