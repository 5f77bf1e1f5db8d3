#include "common/ConversionSummary.h"

#include <gtest/gtest.h>

using MoxTool::ConversionSummary;
using Lines = std::vector<std::string>;

TEST(ConversionSummary, CountsWhatWasTaken) {
    ConversionSummary summary("a.mox");
    summary.shapes = 2;
    summary.nodes = 12;
    summary.elements = 5;
    summary.steps = 3;
    summary.datasets = 20;
    EXPECT_EQ(summary.lines(), Lines{"a.mox: shapes: 2, nodes: 12, elements: 5, steps: 3, datasets: 20"});
}

TEST(ConversionSummary, NamesTheCompressorIfThereIsOne) {
    ConversionSummary summary("a.mox");
    summary.compressor = "zlib";
    EXPECT_EQ(summary.lines(),
              Lines{"a.mox: shapes: 0, nodes: 0, elements: 0, steps: 0, datasets: 0, compressor: zlib"});
}

TEST(ConversionSummary, CountsAndNamesWhatWasSkipped) {
    ConversionSummary summary("a.mox");
    summary.addSkipped("side sets", Lines{"top", "bottom"});
    summary.addSkipped("information records", 7);
    const auto lines = summary.lines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1], "not taken: side sets: 2 (top, bottom)");
    EXPECT_EQ(lines[2], "not taken: information records: 7");
}

TEST(ConversionSummary, SaysNothingOfKindsThatTheFileHasNot) {
    ConversionSummary summary("a.mox");
    summary.addSkipped("side sets", Lines{});
    summary.addSkipped("information records", 0);
    EXPECT_EQ(summary.lines().size(), 1U);
}

TEST(ConversionSummary, StatesAFactOnce) {
    ConversionSummary summary("a.mox");
    summary.addNote("one");
    summary.addNote("two");
    summary.addNote("one");
    const auto lines = summary.lines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1], "note: one");
    EXPECT_EQ(lines[2], "note: two");
}

TEST(ConversionSummary, NamesTenThingsOfAKindUnlessAskedForAll) {
    Lines names;
    for (int i = 1; i <= 12; ++i) {
        names.push_back("s" + std::to_string(i));
    }
    ConversionSummary summary("a.mox");
    summary.addSkipped("side sets", names);
    EXPECT_EQ(summary.lines()[1], "not taken: side sets: 12 (s1, s2, s3, s4, s5, s6, s7, s8, s9, s10 and 2 "
                                  "more; --verbose lists all)");
    EXPECT_EQ(summary.lines(true)[1],
              "not taken: side sets: 12 (s1, s2, s3, s4, s5, s6, s7, s8, s9, s10, s11, s12)");
}

TEST(ConversionSummary, ShowsControlCharactersEscaped) {
    ConversionSummary summary("a\x1B.mox");
    summary.addSkipped("nodes of the type \x07", Lines{"\x1B[2J", "a\\b"});
    summary.addNote("\"\x1B\" is cut");
    const auto lines = summary.lines();
    EXPECT_TRUE(lines[0].starts_with("a\\x1B.mox: "));
    EXPECT_EQ(lines[1], "not taken: nodes of the type \\x07: 2 (\\x1B[2J, a\\\\b)");
    EXPECT_EQ(lines[2], "note: \"\\x1B\" is cut");
}

TEST(ConversionSummary, PassesAsBytesWithTextsThatAreNotUtf8) {
    ConversionSummary summary("a\xFF.mox");
    summary.shapes = 1;
    summary.nodes = 2;
    summary.elements = 3;
    summary.steps = 4;
    summary.datasets = 5;
    summary.compressor = "zlib";
    summary.addSkipped("sets", Lines{"a\n\xFF", "b"});
    summary.addSkipped("records", 6);
    summary.addNote("all is well");
    EXPECT_EQ(ConversionSummary::unpack(summary.pack()).lines(),
              (Lines{"a\\xFF.mox: shapes: 1, nodes: 2, elements: 3, steps: 4, datasets: 5, compressor: zlib",
                     "not taken: sets: 2 (a\\n\\xFF, b)", "not taken: records: 6", "note: all is well"}));
}
