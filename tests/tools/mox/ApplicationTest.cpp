#include "Application.h"

#include "common/MoxRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(Application, WithoutArgumentsItShowsItsHelp) {
    const auto outcome = runMox({});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.output, "mox import bracket.e bracket.mox"));
    EXPECT_EQ(outcome.messages, "");
}

TEST(Application, HelpListsTheCommandsAndExamples) {
    const auto outcome = runMox({"--help"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.output, "import"));
    EXPECT_TRUE(contains(outcome.output, "Examples:"));
}

TEST(Application, HelpOfACommandShowsItsExamples) {
    const auto outcome = runMox({"import", "--help"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.output, "mox import --overwrite modes.exo modes.mox"));
}

TEST(Application, VersionGoesToStandardOutput) {
    const auto outcome = runMox({"--version"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.output.starts_with("mox "));
}

TEST(Application, UnknownCommandIsWrongUsage) {
    const auto outcome = runMox({"embroider"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.messages, "mox: The following argument was not expected: embroider (see mox --help)\n");
}

TEST(Application, MissingArgumentIsWrongUsage) {
    const auto outcome = runMox({"import", "model.e"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.messages, "mox import: OUT.mox is required (see mox import --help)\n");
}

TEST(Application, UnknownOptionIsWrongUsage) {
    const auto outcome = runMox({"import", "--sideways", "model.e", "out.mox"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(contains(outcome.messages, "--sideways"));
}

TEST(Application, NumbersOutOfRangeAreWrongUsageInPlainWords) {
    const auto messageOf = [](const std::string& command, const std::string& option,
                              const std::string& number) {
        const auto outcome = runMox({command, option, number, "a.mox"});
        EXPECT_EQ(outcome.exitCode, 2);
        return outcome.messages;
    };
    EXPECT_EQ(messageOf("stat", "--rows", "-3"),
              "mox stat: --rows: must be a whole number from 0 up, not -3 (see mox stat --help)\n");
    EXPECT_EQ(messageOf("check", "--limit", "-1"),
              "mox check: --limit: must be a whole number from 0 up, not -1 (see mox check --help)\n");
    EXPECT_EQ(messageOf("tree", "--depth", "0"),
              "mox tree: --depth: must be a whole number from 1 up, not 0 (see mox tree --help)\n");
    EXPECT_EQ(messageOf("tree", "--depth", "-2"),
              "mox tree: --depth: must be a whole number from 1 up, not -2 (see mox tree --help)\n");
}

#ifdef __linux__

namespace {

// As with "> /dev/full" in a shell: nothing written there arrives.
[[noreturn]] void runOntoAFullDisk(const std::vector<const char*>& arguments) {
    MoxTool::Terminal terminal(stderr, false, false);
    const bool isOpen = std::freopen("/dev/full", "w", stdout) != nullptr;
    std::_Exit(isOpen
                   ? MoxTool::Application(terminal).run(static_cast<int>(arguments.size()), arguments.data())
                   : -1);
}

} // namespace

TEST(Application, OutputThatCanNotBeWrittenIsAFailureOfTheCommand) {
    const std::string lost = "stdout: the data can't be written; is the disk full\\?";
    EXPECT_EXIT(runOntoAFullDisk({"mox", "completion", "bash"}), testing::ExitedWithCode(1),
                "mox completion: " + lost);
    EXPECT_EXIT(runOntoAFullDisk({"mox", "check", "--rules"}), testing::ExitedWithCode(3),
                "mox check: " + lost);
}

TEST(Application, HelpThatCanNotBeWrittenIsAFailure) {
    const std::string lost = "stdout: the data can't be written; is the disk full\\?";
    EXPECT_EXIT(runOntoAFullDisk({"mox", "--help"}), testing::ExitedWithCode(1), "mox: " + lost);
    EXPECT_EXIT(runOntoAFullDisk({"mox"}), testing::ExitedWithCode(1), "mox: " + lost);
    EXPECT_EXIT(runOntoAFullDisk({"mox", "--version"}), testing::ExitedWithCode(1), "mox: " + lost);
    EXPECT_EXIT(runOntoAFullDisk({"mox", "info", "--help"}), testing::ExitedWithCode(1), "mox.*: " + lost);
}

#endif
