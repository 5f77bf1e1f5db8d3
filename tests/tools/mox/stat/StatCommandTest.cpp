#include "stat/StoredShare.h"
#include "stat/TallyList.h"

#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/MemorySource.h>

#include <regex>

using MoxTool::StoredShare;
using MoxTool::Tally;
using MoxTool::TallyList;

namespace {

MoxReader::BlockRecord compressedBlock(std::uint64_t position, std::uint32_t length, std::uint32_t content) {
    MoxReader::BlockRecord block;
    block.position = position;
    block.length = length;
    block.contentLength = content;
    block.flags = MoxReader::Format::FlagCompressed;
    return block;
}

bool hasRow(const MoxRun& run, const std::string& pattern) {
    return std::regex_search("\n" + run.output, std::regex("\n" + pattern + "\n"));
}

} // namespace

TEST(StoredShare, PieceOfABlockGetsItsPartOfTheBlocksBytes) {
    const auto source = std::make_shared<MoxReader::MemorySource>(std::vector<std::uint8_t>(50));
    const MoxReader::StreamReader stream(source, "Heavy Data",
                                         {compressedBlock(0, 20, 100), compressedBlock(20, 30, 50)});
    const StoredShare share(stream);
    EXPECT_DOUBLE_EQ(share.of(0, 100), 20);
    EXPECT_DOUBLE_EQ(share.of(100, 50), 30);
    EXPECT_DOUBLE_EQ(share.of(50, 75), 10 + 15);
    EXPECT_DOUBLE_EQ(share.of(0, 0), 0);
}

TEST(StoredShare, WhatLiesAfterTheStreamAccountsForNothing) {
    const auto source = std::make_shared<MoxReader::MemorySource>(std::vector<std::uint8_t>(20));
    const StoredShare share(MoxReader::StreamReader(source, "Heavy Data", {compressedBlock(0, 20, 100)}));
    EXPECT_DOUBLE_EQ(share.of(90, 1000), 2);
    EXPECT_DOUBLE_EQ(share.of(500, 1), 0);
}

TEST(TallyList, AddsUpByNameInOrderOfFirstUse) {
    TallyList list;
    list.add("b", {1, 0, 10, 5, 0});
    list.add("a", {1, 0, 10, 5, 0});
    list.add("b", {0, 2, 0, 0, 20});
    ASSERT_EQ(list.rows().size(), 2U);
    EXPECT_EQ(list.rows()[0].first, "b");
    EXPECT_EQ(list.rows()[0].second.links, 2U);
    EXPECT_EQ(list.sum().content, 20U);
    EXPECT_EQ(list.sum().shared, 20U);
}

TEST(TallyList, SortsTheLargestFirstAndEqualOnesByName) {
    TallyList list;
    list.add("small", {1, 0, 1, 1, 0});
    list.add("y", {1, 0, 1, 9, 0});
    list.add("x", {1, 0, 1, 9, 0});
    const auto sorted = list.sorted();
    EXPECT_EQ(sorted.rows()[0].first, "x");
    EXPECT_EQ(sorted.rows()[1].first, "y");
    EXPECT_EQ(sorted.rows()[2].first, "small");
}

namespace {

class StatCommand : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(path); }

    Support::TemporaryFolder folder;
    std::string path = folder.path("sample.mox");
};

} // namespace

TEST_F(StatCommand, ListsBytesByBlockNameDatasetAndStep) {
    const auto run = runMox({"stat", "--bytes", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.messages, "");
    EXPECT_TRUE(hasRow(run, "Heavy Data +1 +32 +[0-9]+ +[0-9.]+ +[0-9.]+ %")) << run.output;
    EXPECT_TRUE(hasRow(run, "Resources +1 +84 +[0-9]+ +[0-9.]+ +[0-9.]+ %")) << run.output;
    EXPECT_TRUE(hasRow(run, "\\(header and index\\) +1 +2800 +2800 +1.00 +[0-9.]+ %")) << run.output;
    EXPECT_TRUE(hasRow(run, "Coordinates +1 +0 +24 +[0-9]+ +[0-9.]+ +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "Temperature +1 +1 +8 +[0-9]+ +[0-9.]+ +8")) << run.output;
    EXPECT_TRUE(hasRow(run, "\\(no step\\) +1 +0 +24 +[0-9]+ +[0-9.]+ +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "Step 2 +0 +1 +0 +0 +- +8")) << run.output;
    EXPECT_TRUE(hasRow(run, "links: 1 datasets share 8 with others, beside 32 that are stored; .*"))
        << run.output;
}

TEST_F(StatCommand, BlocksAddUpToTheFile) {
    const auto size = std::to_string(folder.read("sample.mox").size());
    EXPECT_TRUE(
        hasRow(runMox({"stat", "--bytes", path}), "total +7 +[0-9]+ +" + size + " +[0-9.]+ +100.0 %"));
}

TEST_F(StatCommand, RowsBeyondTheLimitAreOneRow) {
    const auto run = runMox({"stat", "--bytes", "--rows", "1", path});
    EXPECT_TRUE(hasRow(run, "\\(1 more\\) +1 +1 +8 +[0-9]+ +[0-9.]+ +8")) << run.output;
    EXPECT_TRUE(hasRow(run, "\\(2 more\\) +1 +1 +8 +[0-9]+ +[0-9.]+ +8")) << run.output;
}

TEST_F(StatCommand, NumbersThatWereReplacedAreClaimedByNothing) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        const auto shape = model.addNode(Qel::Mox2::Shape, "S");
        for (const float value : {1.0F, 2.0F}) {
            model.addArrayProperty("T", Qel::Mox2::NodeScalar, Qel::Mox2::Array1d<float>{value, value, value},
                                   shape, Qel::Mox2::Step{});
        }
        model.close();
    }
    EXPECT_TRUE(
        hasRow(runMox({"stat", "--bytes", path}), "\\(claimed by nothing\\) +1 +0 +12 +[0-9]+ +[0-9.]+ +0"));
}

TEST_F(StatCommand, LongNameMovesItsOwnRowAlone) {
    namespace Mox = Qel::Mox2;
    {
        Mox::Model model;
        model.saveTo(folder.path("a.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, "root");
        const auto part = model.addNode(Mox::Shape, "part");
        for (const auto& name : {std::string(100'000, 'n'), std::string("short")}) {
            model.addArrayProperty(name, Mox::NodeScalar, Mox::Array1d<float>{1}, part, Mox::Step{});
        }
        model.close();
    }
    const auto run = runMox({"stat", folder.path("a.mox")});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_GT(run.output.size(), 100'000U);
    EXPECT_LT(run.output.size(), 103'000U);
    EXPECT_TRUE(hasRow(run, "short {97}(  +[^ ].*)")) << run.output.substr(0, 2000);
}
