#include "Messages.h"

#include <gtest/gtest.h>

TEST(Terminal, ErrorIsOneLine) {
    Messages messages;
    messages.terminal().error("mox import: a.e: there is no such file");
    EXPECT_EQ(messages.text(), "mox import: a.e: there is no such file\n");
}

TEST(Terminal, ErrorIsRedWhereColoursAreWanted) {
    Messages messages(true, true);
    messages.terminal().error("bad");
    EXPECT_EQ(messages.text(), "\x1B[31mbad\x1B[0m\n");
}

TEST(Terminal, NoteHasNoColour) {
    Messages messages(true, true);
    messages.terminal().note("fine");
    EXPECT_EQ(messages.text(), "fine\n");
}

TEST(Terminal, ProgressIsSilentWhereNobodyWatches) {
    Messages messages;
    messages.terminal().progress("working", 0.5);
    messages.terminal().clearProgress();
    EXPECT_EQ(messages.text(), "");
}

TEST(Terminal, ProgressIsClearedBeforeANote) {
    Messages messages(true, false);
    messages.terminal().progress("working", 0.5);
    messages.terminal().note("done");
    EXPECT_EQ(messages.text(), "\r\x1B[Kworking  50 %\r\x1B[Kdone\n");
}

TEST(Terminal, ProgressShownAgainAtOnceIsLeftOut) {
    Messages messages(true, false);
    messages.terminal().progress("working", 0.25);
    messages.terminal().progress("working", 0.26);
    EXPECT_EQ(messages.text(), "\r\x1B[Kworking  25 %");
}

TEST(Terminal, ShowsControlCharactersEscaped) {
    Messages messages(true, false);
    messages.terminal().error("mox info: a\x1B[2J\nb.mox: \\x1B");
    messages.terminal().note("a\x07.mox");
    messages.terminal().progress("checking \x1B", 0.5);
    EXPECT_EQ(messages.text(), "mox info: a\\x1B[2J\\nb.mox: \\x1B\na\\x07.mox\n"
                               "\r\x1B[Kchecking \\x1B  50 %");
}

#ifdef __linux__

TEST(Terminal, LosesWhatAFullDiskCanNotTakeWithoutAWord) {
    std::FILE* full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    std::setvbuf(full, nullptr, _IONBF, 0);
    {
        MoxTool::Terminal terminal(full, true, false);
        EXPECT_NO_THROW(terminal.error("bad"));
        EXPECT_NO_THROW(terminal.note("fine"));
        EXPECT_NO_THROW(terminal.progress("working", 0.5));
    }
    std::fclose(full);
}

#endif
