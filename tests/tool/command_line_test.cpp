#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/app.h"
#include "cli/description.h"
#include "cli/format_table.h"
#include "cli/progress.h"

namespace {

using namespace quorbin::tool;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Runs shell lines in a folder of its own, with two small pictures; $Q is the tool.
class CommandLine : public testing::Test {
 protected:
    void SetUp() override {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        for (const char* name : {"/a.pgm", "/b.pgm"})
            std::ofstream(folder + name) << "P2 4 4 9\n0 0 0 0 0 9 9 0 0 9 9 0 0 0 0 0\n";
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    int shell(const std::string& line) const {
        const std::string command =
            "cd '" + folder + "' && Q='" QUORBIN_TOOL "'; { " + line + "; } >.out 2>.err </dev/null";
        return WEXITSTATUS(std::system(command.c_str()));
    }
    std::string out() const { return contentOf(folder + "/.out"); }
    std::string err() const { return contentOf(folder + "/.err"); }
    bool isThere(const std::string& name) const { return std::filesystem::exists(folder + "/" + name); }

    const std::string folder = testing::TempDir() + "quorbin_command_line_" + std::to_string(getpid());
};

TEST(Description, OfEveryCommandIsInHelpManualAndCompletionWithAllOptions) {
    const DescribedCommand tool = describe(*makeApp());
    const std::string bash = bashCompletion(tool), zsh = zshCompletion(tool);
    ASSERT_GE(tool.commands.size(), 11U);
    for (const DescribedCommand& command : tool.commands) {
        const std::string help = helpOf(command), page = manPageOf(command, tool);
        EXPECT_EQ(help.rfind("Example: quorbin " + command.name, 0), 0U) << help;
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80U) << line;
        const std::size_t ofCommand = zsh.find("\n        " + command.name + ")");
        ASSERT_NE(ofCommand, std::string::npos);
        const std::string inZsh = zsh.substr(ofCommand, zsh.find(";;", ofCommand) - ofCommand);
        std::size_t count = 0;
        for (const DescribedGroup& group : command.groups)
            for (const DescribedOption& option : group.options)
                for (const std::string& name : option.names) {
                    ++count;
                    std::string inTroff = name;
                    for (std::size_t i = 0; (i = inTroff.find('-', i)) != std::string::npos; i += 2)
                        inTroff.insert(i, "\\");
                    EXPECT_NE(help.find(name), std::string::npos) << command.name << name;
                    EXPECT_NE(page.find("\\fB" + inTroff + "\\fR"), std::string::npos)
                        << command.name << name;
                    EXPECT_TRUE(option.isPositional || bash.find(name) != std::string::npos)
                        << command.name << name;
                    EXPECT_NE(inZsh.find(name), std::string::npos) << command.name << name;
                }
        EXPECT_GE(count, 5U) << command.name << ": --help and --version beside its own";
    }
}

TEST(Bar, TellsTheTimeLeft) {
    EXPECT_EQ(barOf(1, 4, 14), "[######                   ]  25 %  0:42 left");
    EXPECT_EQ(barOf(3, 4, 300), "[##################       ]  75 %  1:40 left");
    EXPECT_EQ(barOf(1, 100, 100), "[                         ]   1 %  2:45:00 left");
    EXPECT_EQ(barOf(0, 100, 100), "[                         ]   0 %");
    EXPECT_EQ(barOf(4, 4, 9), "[#########################] 100 %  0:00 left");
}

TEST(Readme, HasTheTableOfFormats) {
    EXPECT_NE(contentOf(QUORBIN_SOURCES "/README.md")
                  .find("made by scripts/update_readme -->\n" + markdownOfFormats() + "<!-- formats end -->"),
              std::string::npos)
        << "run scripts/update_readme";
}

TEST_F(CommandLine, ManualAndCompletionAreSound) {
    const DescribedCommand tool = describe(*makeApp());
    std::ofstream(folder + "/page.1") << manPageOf(tool, tool) << manPageOf(tool.commands[2], tool);
    if (shell("command -v groff") == 0) {
        EXPECT_EQ(shell("groff -ww -K utf8 -T utf8 -man page.1 >page.txt"), 0);
        EXPECT_EQ(err(), "");
    }
    std::ofstream(folder + "/completion") << bashCompletion(tool);
    std::ofstream(folder + "/try") << "source ./completion\n"
                                      "COMP_CWORD=$(($# - 1)) COMP_WORDS=(\"$@\"); _quorbin\n"
                                      "echo \"${COMPREPLY[*]}\"\n";
    const std::pair<const char*, const char*> cases[] = {{"s", "smooth segment slice"},
                                                         {"smooth --ins", "--inside"},
                                                         {"smooth --inside ''", "above below"},
                                                         {"mesh --format ''", "ply stl obj vtp"},
                                                         {"help me", "mesh measure"},
                                                         {"mask -o a.", "a.pgm"},
                                                         {"smooth --steps ''", ""},
                                                         {"info b", "b.pgm"}};
    for (const auto& [words, offered] : cases) {
        ASSERT_EQ(shell(std::string("bash ./try quorbin ") + words), 0) << err();
        EXPECT_EQ(out(), std::string(offered) + "\n") << words;
    }
}

TEST_F(CommandLine, HelpAndVersionAndFormatsWantNoInput) {
    for (const std::string line : {"help", "help mesh", "-V", "mesh -V", "convert --formats"}) {
        EXPECT_EQ(shell("$Q " + line), 0) << err();
        EXPECT_NE(out(), "") << line;
    }
    EXPECT_EQ(shell("$Q help mesh && $Q mesh --help >again && cmp .out again"), 0);
    EXPECT_EQ(shell("$Q help moosh"), 2);
}

TEST_F(CommandLine, SeveralInputsGoIntoAFolderWithALineEachAndErrorsAtTheEnd) {
    EXPECT_EQ(shell("$Q mask a.pgm none.png b.pgm -o new"), 2);
    EXPECT_EQ(out(),
              "a.pgm: a mask of the values 0 and 9 -> new/a.png\n"
              "b.pgm: a mask of the values 0 and 9 -> new/b.png\n");
    EXPECT_EQ(err().rfind("quorbin: none.png: cannot be opened", 0), 0U);
    // The usual format, or the one that is named; the largest status; a folder for one by its slash.
    EXPECT_EQ(shell("$Q contour a.pgm b.pgm -o new -q && $Q contour a.pgm -o new/ --format csv"), 0) << err();
    EXPECT_TRUE(isThere("new/b.svg") && isThere("new/a.csv"));
    EXPECT_EQ(shell("$Q contour a.pgm none.png b.pgm -o new -f --level 20"), 4);
    EXPECT_EQ(shell("cp new/a.png a.png && $Q mask a.pgm a.png -o other"), 2) << "one name for two";
    EXPECT_NE(err().find("a.png: would be written to other/a.png"), std::string::npos) << err();
    EXPECT_EQ(shell("$Q mask a.pgm b.pgm -o -"), 2);
    EXPECT_EQ(shell("$Q segment a.pgm b.pgm -o new --picture over.png"), 2);
    EXPECT_FALSE(isThere("over.png"));
    for (const std::string name : {"new.svg", "new.png"}) {
        EXPECT_EQ(shell("$Q contour a.pgm " + name), 2);
        EXPECT_EQ(err(), "quorbin: " + name +
                             ": is not there to be read; if it is what to write, put it after -o, as in -o " +
                             name + "\n");
        EXPECT_EQ(out(), "");
    }
    ASSERT_EQ(shell("$Q info a.pgm b.pgm"), 0);
    const std::string lines = out();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2);
}

TEST_F(CommandLine, JsonIsOneObjectOfEveryCommand) {
    for (const std::string line : {"info a.pgm", "distance a.pgm -o a.npy", "smooth a.pgm --steps 0 -o s.npy",
                                   "segment a.pgm -o g.svg --level 4", "contour a.pgm -o c.svg",
                                   "mask a.pgm -o m.png", "convert a.pgm -o c.npy"}) {
        ASSERT_EQ(shell("$Q " + line + " --json"), 0) << line << err();
        const auto json = nlohmann::json::parse(out(), nullptr, false);
        ASSERT_TRUE(json.is_object()) << out();
        EXPECT_EQ(json["command"], line.substr(0, line.find(' ')));
        EXPECT_EQ(json["file"], "a.pgm");
        EXPECT_EQ(json["format"], "PNM");
        EXPECT_EQ(json["width"], 4);
        EXPECT_EQ(json["spacing"], (std::vector<double>{1, 1}));
        EXPECT_EQ(json["written"].size(), line[0] == 'i' ? 0U : 1U) << out();
        EXPECT_GE(json["seconds"], 0.0);
    }
    // The level is there whoever has chosen it, but for what has none.
    ASSERT_EQ(shell("echo 'P2 4 1 9 0 1 8 9' >c.pgm; $Q convert c.pgm -o field.npy"), 0) << err();
    for (const auto& [words, level] : {std::pair<std::string, double>{"info a.pgm", 4.5},
                                       {"mask c.pgm -o c.png", 4.5},
                                       {"info c.pgm --level 3", 3},
                                       {"distance c.pgm -o d.npy", 4.5},
                                       {"info field.npy", 0}}) {
        shell("$Q " + words + " --json");
        EXPECT_EQ(nlohmann::json::parse(out())["level"], level) << words;
    }
    ASSERT_EQ(shell("$Q info c.pgm --between 1,8 --json"), 0) << err();
    EXPECT_FALSE(nlohmann::json::parse(out()).contains("level"));
    EXPECT_EQ(shell("$Q contour a.pgm none.pgm --json"), 2);
    const auto json = nlohmann::json::parse(out(), nullptr, false);
    EXPECT_EQ(json["files"][0]["polygons"], 1);
    EXPECT_TRUE(json["files"][1].contains("error"));
    EXPECT_EQ(shell("$Q mask a.pgm -o - --json"), 2);
    ASSERT_EQ(shell("$Q demo -o demo --json"), 0);
    EXPECT_EQ(nlohmann::json::parse(out())["written"].size(), 11U);
    EXPECT_TRUE(nlohmann::json::parse(out())["level"].is_number());
}

TEST_F(CommandLine, AFileThatMayNotBeWrittenStaysWhatItIs) {
    EXPECT_EQ(shell("echo mine >a.png; chmod 444 a.png; $Q mask a.pgm -o a.png -f"), 2);
    EXPECT_NE(err().find("a.png: is read-only"), std::string::npos);
    EXPECT_EQ(contentOf(folder + "/a.png"), "mine\n");
    EXPECT_EQ(shell("$Q demo --input a.pgm -o d --level nan"), 2);
    EXPECT_EQ(shell("$Q demo --input a.pgm -o d --inside sideways"), 2);
}

TEST_F(CommandLine, EverySignalThatEndsTheToolLeavesNothing) {
    ASSERT_EQ(shell("echo 'P2 4 1 9 0 1 8 9' >c.pgm"), 0);
    for (const auto& [signal, status] : {std::pair{"INT", 130}, {"QUIT", 131}, {"TERM", 143}}) {
        // Jobs in the background of a script ignore INT and QUIT until the tool sets them.
        EXPECT_EQ(shell("$Q smooth c.pgm --explicit --steps 1000000000 -o out.svg & "
                        "until ls .quorbin-* >/dev/null 2>&1; do sleep 0.01; done; kill -" +
                        std::string(signal) + " $!; wait $!"),
                  status);
        EXPECT_NE(shell("ls .quorbin-* out.svg"), 0);
    }
}

}  // namespace
