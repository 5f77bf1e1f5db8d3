#include "Application.h"

#include "Commands.h"
#include "Support/AddressSanitizer.h"
#include "common/CommandLine.h"
#include "common/MoxRun.h"
#include "common/describeHelp.h"

#include <CLI/App.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#ifdef __linux__
#include <sys/resource.h>
#endif

namespace {

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(Application, WithoutArgumentsItShowsAShortOverview) {
    const auto outcome = runMox({});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.output, "mox import bracket.e bracket.mox")) << outcome.output;
    EXPECT_TRUE(contains(outcome.output, "mox help lists all commands")) << outcome.output;
    EXPECT_FALSE(contains(outcome.output, "Options:")) << outcome.output;
    EXPECT_LT(std::ranges::count(outcome.output, '\n'), 20);
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

TEST(Application, HelpListsEachCommandOnce) {
    const auto help = runMox({"--help"}).output;
    const auto list = help.substr(help.find("\nCommands:\n"));
    for (const auto& command : MoxTool::makeCommands()) {
        EXPECT_TRUE(contains(list, "\n  " + command->name() + " ")) << command->name();
    }
}

TEST(Application, HelpNamesTypesByWordsThatPeopleKnow) {
    for (const auto& command : MoxTool::makeCommands()) {
        const auto help = runMox({command->name(), "--help"}).output;
        for (const auto* word : {"TEXT", "UINT", "FLOAT", "INT", "REQUIRED", "Excludes", "POSITIVE"}) {
            EXPECT_FALSE(contains(help, word)) << command->name() << ": " << word;
        }
    }
    EXPECT_TRUE(contains(runMox({"tree", "--help"}).output, "--depth NUMBER"));
    EXPECT_TRUE(contains(runMox({"check", "--help"}).output, "(default: "));
}

// -j is --json; import, which writes no JSON, has it for the number of processes, as other programs do.
TEST(Application, ShortOptionStandsForOneLongOneInAllCommandsButJInImport) {
    std::map<std::string, std::string> meanings;
    CLI::App program("", "mox");
    for (const auto& command : MoxTool::makeCommands()) {
        auto& level = *program.add_subcommand(command->name());
        MoxTool::CommandLine line(level);
        command->addOptions(line);
        for (const auto& option : MoxTool::describeHelp(level).options) {
            if (command->name() == "import" && option.names.back() == "-j") {
                EXPECT_EQ(option.names.front(), "--jobs");
            } else if (option.names.back().size() == 2) {
                const auto known = meanings.emplace(option.names.back(), option.names.front()).first;
                EXPECT_EQ(known->second, option.names.front()) << command->name();
            }
        }
    }
    EXPECT_EQ(meanings.at("-f"), "--overwrite");
    EXPECT_EQ(meanings.at("-o"), "--output");
    EXPECT_EQ(meanings.at("-j"), "--json");
}

TEST(Application, VersionGoesToStandardOutputWithWhatIsBuiltIn) {
    const auto outcome = runMox({"--version"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.output.starts_with("mox "));
    for (const auto* library : {"\nExodus II  ", "\nCGNS       ", "\nGmsh       ", "\nzlib       1."}) {
        EXPECT_TRUE(contains(outcome.output, library)) << outcome.output;
    }
    EXPECT_EQ(std::ranges::count(outcome.output, '\n'), 5);
    EXPECT_EQ(runMox({"-V"}).output, outcome.output);
    EXPECT_EQ(runMox({"version"}).output, outcome.output);
}

TEST(Application, HelpOfACommandCanBeAskedForInTwoWays) {
    const auto outcome = runMox({"help", "import"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.output, "Usage: mox import [OPTIONS] MODEL OUT.mox\n")) << outcome.output;
    EXPECT_EQ(runMox({"import", "--help"}).output, outcome.output);
    EXPECT_EQ(runMox({"help"}).output, runMox({"--help"}).output);
}

TEST(Application, UnknownCommandIsWrongUsageAndItsLikeIsNamed) {
    const auto outcome = runMox({"embroider"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.messages, "mox: there is no command \"embroider\" (see mox --help)\n");
    EXPECT_EQ(runMox({"inof", "a.mox"}).messages,
              "mox: there is no command \"inof\"; did you mean info? (see mox --help)\n");
    const auto help = runMox({"help", "improt"});
    EXPECT_EQ(help.exitCode, 2);
    EXPECT_EQ(help.messages,
              "mox help: there is no command \"improt\"; did you mean import? (see mox help --help)\n");
}

TEST(Application, UnknownOptionIsWrongUsageAndItsLikeIsNamed) {
    const auto outcome = runMox({"info", "--quik", "a.mox"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.messages,
              "mox info: there is no option --quik; did you mean --quick? (see mox info --help)\n");
    EXPECT_EQ(runMox({"import", "--sideways", "model.e", "out.mox"}).messages,
              "mox import: there is no option --sideways (see mox import --help)\n");
    EXPECT_EQ(runMox({"extract", "a.mox", "--fromat=csv"}).messages,
              "mox extract: there is no option --fromat; did you mean --format? (see mox extract --help)\n");
    EXPECT_EQ(runMox({"--vresion"}).messages,
              "mox: there is no option --vresion; did you mean --version? (see mox --help)\n");
}

TEST(Application, UnknownOptionIsNamedEvenIfAnArgumentIsMissingToo) {
    EXPECT_TRUE(contains(runMox({"info", "--quik"}).messages, "did you mean --quick?"));
}

TEST(Application, OptionOfACommandHasToStandAfterIt) {
    EXPECT_EQ(runMox({"--quick", "info", "a.mox"}).messages,
              "mox info: --quick has to stand after \"info\" (see mox info --help)\n");
}

TEST(Application, ArgumentTooManyIsNamed) {
    const auto outcome = runMox({"tree", "a.mox", "b\n.mox"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.messages, "mox tree: \"b\\n.mox\" is one argument too many (see mox tree --help)\n");
}

TEST(Application, MissingArgumentIsWrongUsage) {
    const auto outcome = runMox({"import", "model.e"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.messages, "mox import: OUT.mox is required (see mox import --help)\n");
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

namespace {

// Reads zeros without end into memory, of which there is little.
[[noreturn]] void runShortOfMemory(const char* command) {
    const rlimit bound = {std::size_t{1} << 30, RLIM_INFINITY};
    setrlimit(RLIMIT_AS, &bound);
    MoxTool::Terminal terminal(stderr, false, false);
    const std::array<const char*, 3> line = {"mox", command, "/dev/zero"};
    std::_Exit(MoxTool::Application(terminal).run(static_cast<int>(line.size()), line.data()));
}

} // namespace

TEST(Application, TooLittleMemoryIsAFailureThatNamesTheFile) {
    if (SUPPORT_ADDRESS_SANITIZER) {
        GTEST_SKIP() << "the sanitizer needs too much memory for a bound";
    }
    EXPECT_EXIT(runShortOfMemory("tree"), testing::ExitedWithCode(1),
                "^mox tree: /dev/zero: not enough memory\n$");
    EXPECT_EXIT(runShortOfMemory("info"), testing::ExitedWithCode(1),
                "^mox info: /dev/zero: not enough memory\n$");
}

#endif
