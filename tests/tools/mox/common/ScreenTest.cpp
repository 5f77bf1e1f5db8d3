// What fits the width of a terminal.

#ifdef __linux__

#include "MoxRun.h"
#include "SampleModel.h"
#include "Support/TemporaryFolder.h"
#include "TerminalRun.h"

namespace {

using Lines = std::vector<std::string>;

// Commands are not broken, so that they can be copied.
Lines withoutExamples(Lines lines) {
    std::erase_if(lines, [](const auto& line) { return line.starts_with("  mox "); });
    return lines;
}

TEST(Screen, HelpOfEveryCommandFitsTheTerminal) {
    for (const auto* command :
         {"import", "info", "tree", "stat", "dump", "diff", "join", "split", "extract", "export", "view",
          "check", "salvage", "help", "version", "man", "completion"}) {
        const auto lines = withoutExamples(linesInTerminal(80, {"help", command}));
        EXPECT_GT(lines.size(), 15U) << command;
        EXPECT_LE(widestOf(lines), 80U) << command;
    }
}

TEST(Screen, HelpAndOverviewOfTheProgramFitTheTerminal) {
    EXPECT_LE(widestOf(linesInTerminal(80, {})), 80U);
    EXPECT_LE(widestOf(linesInTerminal(80, {"--help"})), 80U);
    EXPECT_LE(widestOf(linesInTerminal(200, {"--help"})), 110U);
}

TEST(Screen, RulesFitTheTerminalAndAreOneLineEachInAPipe) {
    const auto lines = linesInTerminal(80, {"check", "--rules"});
    EXPECT_LE(widestOf(lines), 80U);
    const auto rule =
        std::find(lines.begin(), lines.end(),
                  "105  error    index table form       The head index has 20 records, an Index");
    ASSERT_NE(rule, lines.end());
    EXPECT_EQ(*(rule + 1), std::string(37, ' ') + "Block 200, and it is the last block of the");
    const auto piped = runMox({"check", "--rules"}).output;
    EXPECT_NE(piped.find("\n105  error    index table form       The head index has 20 records, an Index "
                         "Block 200, and it is "
                         "the last block of the table that names it\n"),
              std::string::npos);
}

TEST(Screen, NoteFitsTheTerminal) {
    const Support::TemporaryFolder folder;
    const auto model = folder.path("sample.mox");
    saveSampleModel(model);
    const auto lines = linesInTerminal(60, {"join", folder.path("out.mox"), model});
    ASSERT_GT(lines.size(), 1U);
    for (const auto& line : lines) {
        const bool isOneWord = line.find(' ', 2) == std::string::npos; // a path can be longer
        EXPECT_TRUE(isOneWord || line.size() <= 60) << line;
    }
    EXPECT_TRUE(
        std::any_of(lines.begin(), lines.end(), [](const auto& line) { return line.starts_with("  "); }));
}

} // namespace

#endif
