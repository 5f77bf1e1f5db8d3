#include "../common/MoxRun.h"

TEST(CompletionCommand, PrintsTheOptionsOfEachCommand) {
    const auto run = runMox({"completion", "bash"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("info) options=\"--help -h --quick --quiet -q --no-color --progress\" ;;"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("complete -o filenames -F _mox mox\n"), std::string::npos);
}

TEST(CompletionCommand, KnowsBashAlone) {
    EXPECT_EQ(runMox({"completion", "fish"}).exitCode, 2);
}
