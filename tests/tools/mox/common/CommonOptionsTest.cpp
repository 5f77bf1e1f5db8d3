#include "Commands.h"
#include "MoxRun.h"
#include "SampleModel.h"
#include "Support/CaseStride.h"
#include "Support/TemporaryFolder.h"

#include <cstdio>
#include <sstream>

namespace {

class CommonOptions : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(path); }

    Support::TemporaryFolder folder;
    std::string path = folder.path("two words ü.mox");
};

} // namespace

TEST_F(CommonOptions, ProgressShowsOnATerminalWhereItIsAskedFor) {
    const auto run = runMox({"info", "--progress", path}, true);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.messages.starts_with("\r\x1B[Kdecompressing")) << run.messages;
}

TEST_F(CommonOptions, ProgressMayBeAskedForBeforeTheCommand) {
    EXPECT_NE(runMox({"--progress", "info", path}, true).messages, "");
}

TEST_F(CommonOptions, NoProgressShowsWithoutTheOptionOrWithoutATerminal) {
    EXPECT_EQ(runMox({"info", path}, true).messages, "");
    EXPECT_EQ(runMox({"info", "--progress", path}, false).messages, "");
}

TEST_F(CommonOptions, NoColorTakesTheColourFromErrorsAndOutput) {
    Messages messages(true, true);
    const char* line[] = {"mox", "info", "--no-color", "/nowhere.mox"};
    EXPECT_EQ(MoxTool::Application(messages.terminal()).run(4, line), 1);
    EXPECT_EQ(messages.text(), "mox info: /nowhere.mox: there is no such file\n");
}

TEST_F(CommonOptions, QuietLeavesOutNotesButNotErrors) {
    Messages messages(false);
    messages.terminal().hideNotes();
    messages.terminal().note("a note");
    messages.terminal().error("an error");
    EXPECT_EQ(messages.text(), "an error\n");
    EXPECT_NE(runMox({"info", "-q", "/nowhere.mox"}).messages, "");
}

TEST(TerminalOptions, DropColoursTakesThemFromBothStreams) {
    MoxTool::Terminal terminal(stderr, false, true, true);
    EXPECT_TRUE(terminal.outputColours());
    terminal.dropColours();
    EXPECT_FALSE(terminal.outputColours());
}

TEST_F(CommonOptions, MissingFileAndFolderHaveReasonsOfTheirOwn) {
    const auto missing = folder.path("none.mox");
    const auto noFile = folder.path("");
    for (const std::string command : {"info", "tree", "stat", "dump", "check"}) {
        EXPECT_EQ(runMox({command, missing}).messages,
                  "mox " + command + ": " + missing + ": there is no such file\n");
        EXPECT_EQ(runMox({command, noFile}).messages,
                  "mox " + command + ": " + noFile + ": is a folder, not a file\n");
    }
}

TEST_F(CommonOptions, ControlCharactersInNamesOfFilesAreMadeVisibleEverywhere) {
    const auto odd = folder.path("a\x1B[2J\nb.mox");
    std::filesystem::copy_file(path, odd);
    const std::vector<std::vector<std::string>> lines = {{"info", odd},
                                                         {"check", odd},
                                                         {"check", odd, odd},
                                                         {"stat", odd, odd},
                                                         {"diff", odd, path + "none"},
                                                         {"tree", odd + "none"},
                                                         {"join", folder.path("\x1Bj.mox"), odd},
                                                         {"split", odd, folder.path("\x1Bs")}};
    for (const auto& arguments : lines) {
        const auto run = runMox(arguments);
        EXPECT_EQ((run.output + run.messages).find('\x1B'), std::string::npos) << arguments.front();
    }
    EXPECT_TRUE(runMox({"info", odd}).output.find("a\\x1B[2J\\nb.mox (") != std::string::npos);
}

TEST_F(CommonOptions, DashReadsStandardInput) {
    for (const std::string command : {"info", "tree", "stat", "dump"}) {
        ASSERT_NE(std::freopen(path.c_str(), "rb", stdin), nullptr);
        const auto run = runMox({command, "-"});
        EXPECT_EQ(run.exitCode, 0) << run.messages;
        EXPECT_NE(run.output, "");
    }
}

TEST_F(CommonOptions, FileOfAnotherKindIsOneLineOnStandardErrorAlone) {
    const auto other = folder.write("other.txt", "This is no model, but a text of some length.");
    for (const std::string command : {"info", "tree", "stat", "dump"}) {
        const auto run = runMox({command, other});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.messages, "mox " + command + ": " + other + ": is no MOX file but a text file\n");
    }
}

TEST_F(CommonOptions, HelpOfEveryCommandShowsExamplesAndTheCommonOptions) {
    for (const auto& command : MoxTool::makeCommands()) {
        const auto run = runMox({command->name(), "--help"});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_NE(run.output.find("\nExamples:\n  mox "), std::string::npos) << command->name();
        EXPECT_NE(run.output.find("--no-color"), std::string::npos) << command->name();
        EXPECT_NE(run.output.find("--progress"), std::string::npos) << command->name();
    }
}

TEST_F(CommonOptions, HelpFitsInto110Columns) {
    std::vector<std::vector<std::string>> lines = {{"--help"}};
    for (const auto& command : MoxTool::makeCommands()) {
        lines.push_back({command->name(), "--help"});
    }
    for (const auto& arguments : lines) {
        std::istringstream help(runMox(arguments).output);
        for (std::string line; std::getline(help, line);) {
            EXPECT_LE(line.size(), 110U) << line;
        }
    }
}

// Whatever the bytes say, a command ends with one of its exit codes. The commands take turns.
TEST_F(CommonOptions, EveryDamagedByteEndsInAnExitCode) {
    const auto whole = folder.read("two words ü.mox");
    const auto file = folder.path("damaged.mox");
    const std::vector<std::vector<std::string>> lines = {
        {"info", file}, {"tree", file}, {"stat", file}, {"dump", "--numbers", file}};
    for (std::size_t place = 0; place < whole.size(); place += CaseStride) {
        auto damaged = whole;
        damaged[place] = static_cast<char>(~damaged[place]);
        folder.write("damaged.mox", damaged);
        ASSERT_LE(runMox(lines[place % lines.size()]).exitCode, 1) << place;
    }
}
