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
