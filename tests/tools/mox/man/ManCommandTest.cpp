#include "man/ManPage.h"

#include "common/describeHelp.h"

#include "../common/MoxRun.h"
#include "Support/TemporaryFolder.h"

#include <CLI/App.hpp>

#include <algorithm>
#include <sstream>

TEST(RoffText, KeepsRoffFromTakingCharactersForItsOwn) {
    EXPECT_EQ(MoxTool::roffText("a\\n --b\n.SH\n'x"), "a\\(rsn \\-\\-b\n\\&.SH\n\\&'x");
}

TEST(ManPage, HasTheSectionsOfAManualFromWhatTheHelpShows) {
    CLI::App program("Works", "tool");
    auto& saw = *program.add_subcommand("saw", "Cut a board");
    std::string board;
    saw.add_option("BOARD", board, "What to cut")->required();
    bool fine = false;
    saw.add_flag("--fine", fine, "Slowly");
    saw.footer("It is loud.\n\nExamples:\n  tool saw oak");
    const auto text = MoxTool::ManPage(MoxTool::describeHelp(saw)).text();
    EXPECT_EQ(MoxTool::ManPage(MoxTool::describeHelp(saw)).fileName(), "tool-saw.1");
    EXPECT_TRUE(text.starts_with(".TH \"tool\\-saw\" 1 \"\" \"mox ")) << text;
    EXPECT_EQ(text.substr(text.find(".SH")), R"(.SH NAME
tool\-saw \- Cut a board
.SH SYNOPSIS
\fBtool saw\fR [OPTIONS] BOARD
.SH DESCRIPTION
.nf
It is loud.
.fi
.SH OPTIONS
.TP
\fBBOARD\fR
What to cut
.TP
\fB\-h,\-\-help\fR
Print this help message and exit
.TP
\fB\-\-fine\fR
Slowly
.SH EXAMPLES
.nf
  tool saw oak
.fi
.SH SEE ALSO
tool(1)
)");
}

TEST(ManCommand, PrintsThePageOfACommand) {
    const auto run = runMox({"man", "tree"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("\\fB\\-a,\\-\\-attributes\\fR\n"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("  mox tree bracket.mox\n"), std::string::npos) << run.output;
}

// man indents them by 7 columns and leaves two free.
TEST(ManCommand, DescriptionFitsATerminalOfEightyColumns) {
    const auto page = runMox({"man", "import"}).output;
    const auto start = page.find(".SH DESCRIPTION");
    std::istringstream description(page.substr(start, page.find(".SH OPTIONS") - start));
    std::size_t lines = 0;
    for (std::string line; std::getline(description, line); ++lines) {
        const auto escapes = static_cast<std::size_t>(std::count(line.begin(), line.end(), '\\'));
        EXPECT_LE(line.size() - escapes, 71U) << line;
    }
    EXPECT_GT(lines, 20U);
}

TEST(ManCommand, PrintsThePageOfTheProgramWithItsCommands) {
    const auto output = runMox({"man"}).output;
    EXPECT_NE(output.find("mox\\-tree(1)"), std::string::npos) << output;
    EXPECT_NE(output.find("mox\\-man(1)"), std::string::npos) << output;
}

TEST(ManCommand, WritesAllPagesIntoAFolder) {
    const Support::TemporaryFolder folder;
    EXPECT_EQ(runMox({"man", "--all", folder.path("")}).exitCode, 0);
    EXPECT_TRUE(folder.read("mox.1").starts_with(".TH \"mox\" 1"));
    EXPECT_TRUE(folder.read("mox-dump.1").starts_with(".TH \"mox\\-dump\" 1"));
}

TEST(ManCommand, UnknownCommandIsWrongUsage) {
    const auto run = runMox({"man", "embroider"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.messages, "mox man: there is no command \"embroider\" (see mox man --help)\n");
}

TEST(ManCommand, ShowsInTheHelp) {
    EXPECT_NE(runMox({"--help"}).output.find("\n  man "), std::string::npos);
}
