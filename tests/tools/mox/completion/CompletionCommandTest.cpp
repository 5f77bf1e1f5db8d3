#include "../common/MoxRun.h"

TEST(CompletionCommand, PrintsTheOptionsOfEachCommand) {
    const auto run = runMox({"completion", "bash"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("info) options=\"--help -h --quick --quiet -q --no-color --progress\" ;;"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("complete -o filenames -F _mox mox\n"), std::string::npos);
}

TEST(CompletionCommand, PrintsWhatZshReads) {
    const auto run = runMox({"completion", "zsh"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.output.starts_with("#compdef mox\n"));
    EXPECT_NE(run.output.find("                '(--format)--format=["), std::string::npos) << run.output;
    EXPECT_NE(run.output.find(":value:(csv npy raw)' \\\n"), std::string::npos) << run.output;
}

TEST(CompletionCommand, PrintsWhatFishReads) {
    const auto run = runMox({"completion", "fish"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find(
                  "\ncomplete -c mox -n '__fish_seen_subcommand_from extract' -l output -s o -r -F -d '"),
              std::string::npos)
        << run.output;
}

TEST(CompletionCommand, KnowsNoOtherShell) {
    EXPECT_EQ(runMox({"completion", "csh"}).exitCode, 2);
}
