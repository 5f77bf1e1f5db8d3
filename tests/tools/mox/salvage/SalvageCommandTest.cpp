#include "../common/FirstBlock.h"
#include "Salvage.h"

#include <Support/SampleModel.h>

#include <algorithm>

namespace {

using Lines = std::vector<std::string>;

std::vector<std::uint8_t> block(const std::vector<std::uint8_t>& content) {
    return Bytes().u32(static_cast<std::uint32_t>(content.size())).raw(zlibStream(content));
}

// What a crash leaves: the first twelve bytes, zeros for the index, and what was written after it.
Bytes headOfNeverClosed() {
    Bytes file;
    file.raw({0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A}).raw("1.3").u8(0);
    return file.fill(FirstBlock - file.size(), 0);
}

const std::vector<std::uint8_t> Sevens(1000, 7);
const auto Whole = block(Sevens);

/// The content of a block that does not compress, so that its bytes are the content's, after 4 + 2 + 5
/// others.
std::vector<std::uint8_t> incompressible() {
    std::vector<std::uint8_t> content;
    for (unsigned i = 0, value = 1; i < 300; ++i, value = value * 75 % 65537) {
        content.push_back(static_cast<std::uint8_t>(value >> 4));
    }
    return content;
}

/// The end of a line about a stream whose blocks are not all saved.
std::string lossOf(std::size_t begun, std::size_t unread) {
    return " (saved in part: " + std::to_string(begun) +
           ", stored bytes not read: " + std::to_string(unread) + ")";
}

} // namespace

TEST(SalvageCommand, SavesEveryBlockOfAFileThatWasNeverClosed) {
    const Salvage salvage(headOfNeverClosed().raw(Whole).raw(Whole));
    EXPECT_EQ(salvage.run.exitCode, 0) << salvage.run.messages;
    ASSERT_EQ(salvage.index.at("blocks").size(), 2u);
    EXPECT_EQ(salvage.index.at("blocks")[0].at("file"), "block-0001.raw");
    EXPECT_EQ(salvage.index.at("blocks")[1].at("file"), "block-0002.raw");
    EXPECT_EQ(salvage.content(salvage.index.at("blocks")[0]), std::string(1000, 7));
    EXPECT_EQ(salvage.content(salvage.index.at("blocks")[1]), std::string(1000, 7));
    EXPECT_EQ(salvage.index.at("blocks")[1].at("offset"), FirstBlock + Whole.size());
    EXPECT_EQ(salvage.index.at("blocks")[1].at("stored"), Whole.size());
    EXPECT_EQ(salvage.index.at("blocks")[1].at("content"), 1000);
    EXPECT_EQ(salvage.index.at("partial").size(), 0u);
    EXPECT_EQ(salvage.index.at("notSaved").size(), 0u);
}

TEST(SalvageCommand, ReportsWhatAFileThatWasNeverClosedLacks) {
    const Salvage salvage(headOfNeverClosed().raw(Whole));
    EXPECT_EQ(salvage.index.at("state"), "it was never closed by its writer");
    EXPECT_EQ(salvage.lost(),
              (Lines{"the index: which block holds what",
                     "the end of \"Heavy Data\": the numbers of datasets that had not filled a block",
                     "\"Mox Tree\": the tree: names, types and ids of nodes",
                     "\"Light Data\": the descriptors: transforms, and name, step, type, size and place of "
                     "each dataset",
                     "\"Attributes\": the attributes of groups and datasets", "\"Resources\": the materials",
                     "\"Global Information\": who saved the file, and when"}));
    EXPECT_NE(salvage.run.output.find("lost: \"Mox Tree\": the tree"), std::string::npos);
    EXPECT_NE(salvage.run.output.find("note: a writer puts blocks of numbers on disk as they fill"),
              std::string::npos);
}

TEST(SalvageCommand, GoesOnAfterThePlaceOfAnIndexTable) {
    const Salvage salvage(headOfNeverClosed().raw(Whole).fill(27804, 0).raw(Whole));
    EXPECT_EQ(salvage.index.at("blocks").size(), 2u);
    ASSERT_EQ(salvage.index.at("notSaved").size(), 1u);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("offset"), FirstBlock + Whole.size());
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("size"), 27804);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("what"), "the place of an index table, all zeros");
}

TEST(SalvageCommand, GoesOnAfterAnIndexTable) {
    Bytes table;
    table.u32(200);
    for (unsigned i = 0; i < 200; ++i) {
        table.raw(indexRecord(i,
                              "\x0B"
                              "Empty Block ",
                              0, 0));
    }
    const Salvage salvage(headOfNeverClosed().raw(Whole).raw(table).raw(Whole));
    EXPECT_EQ(salvage.index.at("blocks").size(), 2u);
    ASSERT_EQ(salvage.index.at("notSaved").size(), 1u);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("size"), 27804);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("what"), "an index table");
}

TEST(SalvageCommand, SavesTheBeginningOfABlockThatIsCutOff) {
    const auto content = incompressible();
    const auto last = cut(block(content), 4 + 2 + 5 + 100);
    const Salvage salvage(headOfNeverClosed().raw(Whole).raw(last));
    EXPECT_EQ(salvage.run.exitCode, 0) << salvage.run.messages;
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    const auto& partial = salvage.index.at("partial")[0];
    EXPECT_EQ(partial.at("file"), "block-0002.part.raw");
    EXPECT_EQ(partial.at("offset"), FirstBlock + Whole.size());
    EXPECT_EQ(partial.at("stored"), 111);
    EXPECT_EQ(partial.at("content"), 300);
    EXPECT_EQ(partial.at("inflated"), 100);
    EXPECT_EQ(partial.at("damage"), "the block ends before its compressed bytes do");
    EXPECT_EQ(salvage.content(partial), std::string(content.begin(), content.begin() + 100));
    EXPECT_EQ(salvage.index.at("blocks").size(), 1u);
    EXPECT_EQ(salvage.index.at("notSaved").size(), 0u);
    EXPECT_EQ(salvage.lost()[1], "what is missing or wrong in blocks that are cut off or damaged: 1");
    EXPECT_NE(salvage.run.output.find("saved: 1 blocks whole, 1 cut off or damaged\n"), std::string::npos);
    EXPECT_NE(salvage.run.output.find("block-0002.part.raw  offset " +
                                      std::to_string(FirstBlock + Whole.size()) +
                                      ", 111 bytes, inflated 100, PART of a block of 300: the block ends"),
              std::string::npos)
        << salvage.run.output;
    EXPECT_NE(salvage.run.output.find("nothing vouches for these bytes"), std::string::npos);
}

TEST(SalvageCommand, IsContentWithTheBeginningOfABlock) {
    const Salvage salvage(headOfNeverClosed().raw(cut(block(incompressible()), 12)));
    EXPECT_EQ(salvage.run.exitCode, 0) << salvage.run.messages;
    EXPECT_EQ(salvage.index.at("blocks").size(), 0u);
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.index.at("partial")[0].at("inflated"), 1);
}

TEST(SalvageCommand, MakesNoFolderForABlockOfWhichNoContentIsThere) {
    const Salvage salvage(headOfNeverClosed().raw(cut(block(incompressible()), 11)));
    EXPECT_EQ(salvage.run.exitCode, 1);
    EXPECT_NE(salvage.run.messages.find("nothing can be saved"), std::string::npos) << salvage.run.messages;
    EXPECT_FALSE(salvage.madeFolder());
}

TEST(SalvageCommand, SavesABlockWithAWrongChecksumAsOneThatNothingVouchesFor) {
    auto damaged = Whole;
    damaged.back() ^= 1;
    const Salvage salvage(headOfNeverClosed().raw(damaged).raw(Whole));
    ASSERT_EQ(salvage.index.at("blocks").size(), 1u);
    EXPECT_EQ(salvage.index.at("blocks")[0].at("file"), "block-0002.raw");
    EXPECT_EQ(salvage.index.at("blocks")[0].at("offset"), FirstBlock + Whole.size());
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.index.at("partial")[0].at("file"), "block-0001.damaged.raw");
    EXPECT_EQ(salvage.index.at("partial")[0].at("inflated"), 1000);
    EXPECT_EQ(salvage.index.at("partial")[0].at("damage"), "the content does not match its checksum");
    EXPECT_NE(salvage.run.output.find(", DAMAGED block of 1000: the content does not match its checksum"),
              std::string::npos)
        << salvage.run.output;
    EXPECT_EQ(salvage.index.at("notSaved").size(), 0u);
}

TEST(SalvageCommand, SavesTheBeginningUpToDamage) {
    // Two stretches of stored bytes, the second with a length that contradicts its complement.
    const auto damaged =
        Bytes().u32(5).raw({0x78, 0x9C, 0, 3, 0, 0xFC, 0xFF}).raw("abc").raw({1, 2, 0, 0, 0}).raw("de");
    const Salvage salvage(headOfNeverClosed().raw(damaged).raw(Whole));
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.content(salvage.index.at("partial")[0]), "abc");
    EXPECT_EQ(salvage.index.at("partial")[0].at("content"), 5);
    EXPECT_EQ(salvage.index.at("partial")[0].at("damage"), "the compressed bytes are damaged");
    ASSERT_EQ(salvage.index.at("notSaved").size(), 1u);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("what"), "nothing that can be inflated");
    EXPECT_EQ(salvage.index.at("blocks").size(), 1u);
}

TEST(SalvageCommand, TakesNoMoreThanTheStatedLength) {
    const Salvage salvage(headOfNeverClosed().u32(999).raw(zlibStream(Sevens)).raw(Whole));
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.content(salvage.index.at("partial")[0]), std::string(999, 7));
    EXPECT_EQ(salvage.index.at("partial")[0].at("damage"), "the content is longer than stated");
}

TEST(SalvageCommand, TakesAShorterContentThanStatedForDamage) {
    const Salvage salvage(headOfNeverClosed().u32(1001).raw(zlibStream(Sevens)).raw(Whole));
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.content(salvage.index.at("partial")[0]), std::string(1000, 7));
    EXPECT_EQ(salvage.index.at("partial")[0].at("damage"), "the content is shorter than stated");
}

// The first half of a block, followed directly by another: what the first one's stream would make of the
// second one's bytes is not its content.
TEST(SalvageCommand, EndsABeginningWhereAnotherBlockBegins) {
    const auto content = incompressible();
    const auto half = cut(block(content), 4 + 2 + 5 + 150);
    const Salvage salvage(headOfNeverClosed().raw(half).raw(Whole));
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.content(salvage.index.at("partial")[0]),
              std::string(content.begin(), content.begin() + 150));
    EXPECT_EQ(salvage.index.at("blocks").size(), 1u);
}

TEST(SalvageCommand, SavesNeighboursThatAreBothDamagedIfTheIndexHasThem) {
    TestFile file;
    auto damaged = block(incompressible());
    damaged.back() ^= 1;
    file.compressed("Mox Tree", Sevens).raw("Heavy Data", damaged, 1).raw("Heavy Data", damaged, 1);
    const Salvage salvage(file.bytes());
    ASSERT_EQ(salvage.index.at("partial").size(), 2u);
    EXPECT_EQ(salvage.index.at("partial")[0].at("offset"), FirstBlock + Whole.size());
    EXPECT_EQ(salvage.index.at("partial")[1].at("offset"), FirstBlock + Whole.size() + damaged.size());
    EXPECT_EQ(salvage.index.at("partial")[1].at("name"), "Heavy Data");
    EXPECT_EQ(salvage.lost(),
              Lines{"2 of 2 blocks of \"Heavy Data\": the numbers of datasets" + lossOf(2, 0)});
}

// Blocks that follow each other after bytes that are not blocks: only a search finds them.
TEST(SalvageCommand, FindsABlockThatIsCutOffAfterOtherBytes) {
    std::vector<std::uint8_t> content;
    for (unsigned i = 0; i < 10; ++i) {
        content.insert(content.end(), Whole.begin(), Whole.end());
    }
    for (unsigned i = 0; i < 1000; ++i) {
        content.push_back(static_cast<std::uint8_t>(i * i >> 3));
    }
    const auto last = block(content);
    const Salvage salvage(headOfNeverClosed().raw(Whole).raw("no block").raw(cut(last, last.size() - 5)));
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.index.at("partial")[0].at("offset"), FirstBlock + Whole.size() + 8);
    EXPECT_EQ(salvage.index.at("notSaved").size(), 1u);
}

TEST(SalvageCommand, TakesAFewFittingBytesAtTheEndForChance) {
    const auto beginning = cut(block(incompressible()), 4 + 2 + 5 + 100);
    const Salvage salvage(headOfNeverClosed().raw(Whole).raw("no block").raw(beginning));
    EXPECT_EQ(salvage.index.at("blocks").size(), 1u);
    EXPECT_EQ(salvage.index.at("partial").size(), 0u);
    ASSERT_EQ(salvage.index.at("notSaved").size(), 1u);
    EXPECT_EQ(salvage.index.at("notSaved")[0].at("size"), 8 + beginning.size());
}

// A search comes upon a stream that could continue to the end of the file. The whole block in it shows that
// it does not, and after that another block is cut off.
TEST(SalvageCommand, FindsABlockThatIsCutOffAfterOneThatOnlySeemedToBe) {
    const std::vector<std::uint8_t> content(2000, 1);
    const auto seeming = Bytes().u32(5000).raw({0x78, 0x9C, 0, 0xFF, 0x7F, 0, 0x80});
    const auto last = cut(Bytes().u32(5000).raw({0x78, 0x9C, 0, 0xFF, 0x7F, 0, 0x80}).raw(content), 1000);
    const Salvage salvage(headOfNeverClosed().raw("no block").raw(seeming).raw(Whole).raw("none").raw(last));
    EXPECT_EQ(salvage.index.at("blocks").size(), 1u);
    ASSERT_EQ(salvage.index.at("partial").size(), 1u);
    EXPECT_EQ(salvage.index.at("partial")[0].at("offset"),
              FirstBlock + 8 + seeming.size() + Whole.size() + 4);
    EXPECT_EQ(salvage.index.at("partial")[0].at("inflated"), 1000 - 4 - 2 - 5);
}

// The index lists the last one as uncompressed.
TEST(SalvageCommand, FindsAWholeBlockAfterSeveralDamagedOnesThoughTheIndexHasNone) {
    auto damaged = block(incompressible());
    damaged.back() ^= 1;
    TestFile file;
    file.raw("Heavy Data", damaged, 1).raw("Heavy Data", damaged, 1).plain("Other", Whole);
    const Salvage salvage(file.bytes());
    EXPECT_EQ(salvage.index.at("partial").size(), 2u);
    ASSERT_EQ(salvage.index.at("blocks").size(), 1u);
    EXPECT_EQ(salvage.index.at("blocks")[0].at("offset"), FirstBlock + 2 * damaged.size());
}

TEST(SalvageCommand, CountsWhatIsLostOfAFileThatIsCutShort) {
    TestFile file;
    const auto content = incompressible();
    for (unsigned i = 0; i < 9; ++i) {
        file.compressed("Heavy Data", content);
    }
    file.compressed("Mox Tree", Sevens).compressed("Colours of the sky", Sevens);
    const auto stored = block(content).size();
    const auto bytes = file.bytes();
    const auto length = FirstBlock + 6 * stored + 111;
    const Salvage salvage(cut(bytes, length));
    const auto missing = bytes.size() - length;
    EXPECT_EQ(salvage.index.at("state"), "it is cut short: " + std::to_string(missing) +
                                             " of the bytes that its index lists are missing");
    EXPECT_EQ(salvage.lost(),
              (Lines{"3 of 9 blocks of \"Heavy Data\": the numbers of datasets" + lossOf(1, 3 * stored - 111),
                     "1 of 1 blocks of \"Mox Tree\": the tree: names, types and ids of nodes" +
                         lossOf(0, Whole.size()),
                     "1 of 1 blocks of \"Colours of the sky\": of a use that is not known" +
                         lossOf(0, Whole.size())}));
    EXPECT_EQ(salvage.index.at("partial")[0].at("name"), "Heavy Data");
}

TEST(SalvageCommand, ReportsThatTheIndexIsCutShortToo) {
    TestFile file;
    for (unsigned i = 0; i < 25; ++i) {
        file.compressed("Heavy Data", Sevens);
    }
    file.compressed("Mox Tree", Sevens);
    const Salvage salvage(cut(file.bytes(), FirstBlock + 18 * Whole.size()));
    EXPECT_EQ(salvage.index.at("state"), "it is cut short: at least " + std::to_string(Whole.size() + 27804) +
                                             " of the bytes that its index lists are missing");
    ASSERT_EQ(salvage.lost().size(), 7u);
    EXPECT_EQ(salvage.lost()[0],
              "1 of 19 blocks of \"Heavy Data\": the numbers of datasets" + lossOf(0, Whole.size()));
    EXPECT_EQ(salvage.lost()[1],
              "the index after its first 20 entries: what blocks there were, and what they held");
    EXPECT_EQ(salvage.lost()[2],
              "\"Mox Tree\", or where in the file it is: the tree: names, types and ids of nodes");
}

TEST(SalvageCommand, SavesBlocksWithoutNamesIfTheIndexIsDamaged) {
    const auto bytes = patched(SampleModel().file().bytes(), 12, {1, 1, 1, 1});
    const Salvage salvage(bytes);
    EXPECT_EQ(salvage.index.at("blocks").size(), 6u);
    EXPECT_TRUE(salvage.index.at("blocks")[0].at("name").is_null());
    EXPECT_EQ(salvage.lost(), Lines{"the index: which block holds what"});
}

// The lengths in the index determine the places: a wrong one moves all that follow.
TEST(SalvageCommand, ReportsThatSavedBlocksCanBeThoseThatTheIndexMisses) {
    const auto recordOfFirst = 16 + 4;
    const auto bytes = patched(SampleModel().file().bytes(), recordOfFirst + 133, {1, 0, 0, 0});
    const Salvage salvage(bytes);
    EXPECT_EQ(salvage.index.at("blocks").size(), 6u);
    EXPECT_EQ(salvage.lost().size(), 5u);
    EXPECT_NE(salvage.run.output.find("note: the index has no block where 5 of the saved ones stand"),
              std::string::npos)
        << salvage.run.output;
}

TEST(SalvageCommand, CountsABlockWhoseCompressionFailedAsLost) {
    TestFile file;
    file.raw("Heavy Data", {}, 1).compressed("Mox Tree", Sevens);
    const Salvage salvage(file.bytes());
    EXPECT_EQ(salvage.index.at("blocks")[0].at("name"), "Mox Tree");
    EXPECT_EQ(salvage.lost(),
              Lines{"1 of 1 blocks of \"Heavy Data\": the numbers of datasets" + lossOf(0, 0)});
}

TEST(SalvageCommand, LeavesAWholeFileAloneUnlessForced) {
    const auto bytes = SampleModel().file().bytes();
    const Salvage refused(bytes);
    EXPECT_EQ(refused.run.exitCode, 1);
    EXPECT_NE(refused.run.messages.find("is whole, nothing needs salvaging"), std::string::npos);
    EXPECT_FALSE(refused.madeFolder());
    const Salvage forced(bytes, {"--force"});
    EXPECT_EQ(forced.run.exitCode, 0);
    EXPECT_EQ(forced.index.at("blocks").size(), 6u);
    EXPECT_EQ(forced.lost().size(), 0u);
}

TEST(SalvageCommand, MakesNoFolderIfNothingIsLeft) {
    const Support::TemporaryFolder folder;
    const std::vector<std::uint8_t> bytes = headOfNeverClosed().raw({1, 2, 3});
    const auto file = folder.write("damaged.mox", {bytes.begin(), bytes.end()});
    const auto run = runMox({"salvage", file, folder.path("out")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages,
              "mox salvage: " + file +
                  ": it was never closed by its writer; not even the beginning of a block can be "
                  "inflated, so nothing can be saved\n");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"damaged.mox"});
}

TEST(SalvageCommand, RefusesWhatIsNoModelFile) {
    const Salvage salvage(std::vector<std::uint8_t>(5000, 'x'));
    EXPECT_EQ(salvage.run.exitCode, 1);
    EXPECT_NE(salvage.run.messages.find("is no MOX file by its first bytes"), std::string::npos)
        << salvage.run.messages;
}

TEST(SalvageCommand, DoesNotTouchAFolderThatExists) {
    const Support::TemporaryFolder folder;
    const std::vector<std::uint8_t> bytes = headOfNeverClosed().raw(Whole);
    std::filesystem::create_directory(folder.path("out"));
    const auto run =
        runMox({"salvage", folder.write("damaged.mox", {bytes.begin(), bytes.end()}), folder.path("out")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.messages.find("exists already"), std::string::npos);
}

TEST(SalvageCommand, ShowsExamplesAndExitCodesInItsHelp) {
    const auto help = runMox({"salvage", "--help"}).output;
    EXPECT_NE(help.find("mox salvage crashed.mox saved"), std::string::npos);
    EXPECT_NE(help.find("0 a block was saved, or the beginning of one"), std::string::npos);
}
