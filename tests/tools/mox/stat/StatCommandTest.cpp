#include "stat/StoredShare.h"
#include "stat/TallyList.h"

#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "../common/SteppedModel.h"
#include "Support/TemporaryFolder.h"

#include <MoxReader/MemorySource.h>

#include <nlohmann/json.hpp>

#include <limits>
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

// Shares of a block add up to numbers that differ in their last digits.
TEST(TallyList, SortsByNameWhatShowsTheSameBytes) {
    TallyList list;
    list.add("y", {1, 0, 1, 9.0000001, 0});
    list.add("x", {1, 0, 1, 9, 0});
    EXPECT_EQ(list.sorted().rows()[0].first, "x");
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
    EXPECT_TRUE(hasRow(run, "2 +0 +1 +0 +0 +- +8")) << run.output;
    EXPECT_TRUE(hasRow(run, "links: 1 dataset shares 8 bytes of numbers with others; this saves about [0-9]+ "
                            "bytes in the file"))
        << run.output;
}

TEST_F(StatCommand, StepsStandInTheirOrderWithTheirTimes) {
    saveSteppedModel(path);
    const auto run = runMox({"stat", "--bytes", path});
    const auto row = [&](const std::string& title) { return run.output.find("\n" + title + " "); };
    EXPECT_TRUE(hasRow(run, "2 @0.25 +1 +0 +8 .*")) << run.output;
    EXPECT_TRUE(hasRow(run, "7 \"Mode 2\" @20 +1 +0 +24 .*")) << run.output;
    EXPECT_LT(row("1 @0"), row("2 @0.25"));
    EXPECT_LT(row("2 @0.25"), row("3 @0.5"));
}

TEST_F(StatCommand, ModelWithoutStepsHasNoTableOfThemAndWithoutLinksNoLineOfThese) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        model.close();
    }
    const auto run = runMox({"stat", path});
    EXPECT_EQ(run.output.find("step"), std::string::npos) << run.output;
    EXPECT_EQ(run.output.find("links:"), std::string::npos) << run.output;
}

TEST_F(StatCommand, ShowsTheValuesOfEachDatasetOverAllStepsWithTheirPlaces) {
    saveSteppedModel(path);
    const auto run = runMox({"stat", "--values", path});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(hasRow(run, "dataset +min +at +max +at +mean")) << run.output;
    EXPECT_TRUE(hasRow(run, "T +-50 +3/1/5 +50 +3/0/5 +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "Mode x +1 +5/0/6 +4 +5/1/6 +2.5")) << run.output;
    EXPECT_TRUE(hasRow(run, "Mode z +3 +5/0/6 +6 +5/1/6 +4.5")) << run.output;
}

TEST_F(StatCommand, ShowsTheValuesOfEachStepOnRequest) {
    saveSteppedModel(path);
    const auto run = runMox({"stat", "--values", "--steps", path});
    EXPECT_NE(run.output.find("step 2 @0.25\n"), std::string::npos) << run.output;
    EXPECT_TRUE(hasRow(run, "T +-2 +5/1 +2 +5/0 +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "T +-30 +3/1 +30 +3/0 +0")) << run.output;
    const auto one = runMox({"stat", "--values", "--step", "@0.25", path});
    EXPECT_EQ(one.output.rfind("step 2 @0.25\n", 0), 0U) << one.output;
    EXPECT_EQ(one.output.find("step 3"), std::string::npos) << one.output;
}

TEST_F(StatCommand, CountsNumbersThatAreNotFiniteAndLeavesThemOutOfTheRest) {
    const auto run = runMox({"stat", "--values", path});
    EXPECT_TRUE(hasRow(run, "dataset +min +at +max +at +mean +NaN +inf")) << run.output;
    EXPECT_TRUE(hasRow(run, "Coordinates x +0 +3/0 +0 +3/0 +0 +0 +1")) << run.output;
    EXPECT_TRUE(hasRow(run, "Coordinates y +0.1 +3/0 +0.1 +3/0 +0.1 +1 +0")) << run.output;
    EXPECT_TRUE(hasRow(run, "Temperature +20 +3/0/1 +80 +3/1/1 +50 +0 +0")) << run.output;
}

TEST_F(StatCommand, GivesTheValuesOfEachStepAsJson) {
    saveSteppedModel(path);
    const auto run = runMox({"stat", "--values", "--json", path});
    const auto file = nlohmann::json::parse(run.output).at("files").at(0);
    EXPECT_EQ(file.at("file"), path);
    const auto& second = file.at("values").at(1);
    EXPECT_EQ(second.at("dataset"), "T");
    EXPECT_EQ(second.at("step"), "Step 2");
    EXPECT_EQ(second.at("stepNumber"), 2);
    EXPECT_EQ(second.at("time"), 0.25);
    EXPECT_EQ(second.at("count"), 2);
    EXPECT_EQ(second.at("nan"), 0);
    EXPECT_EQ(second.at("infinite"), 0);
    EXPECT_EQ(second.at("min"), -2);
    EXPECT_EQ(second.at("minAt"),
              nlohmann::json({{"node", "/Root/B"}, {"id", 5}, {"row", 1}, {"step", "Step 2"}}));
    EXPECT_EQ(second.at("mean"), 0);
}

TEST_F(StatCommand, DatasetsOfOneNameAndSeveralTypesShowTheirTypes) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::RootGroup, "root");
        const auto ids = model.addAssemblyComponents(std::vector<std::string>{"/root/a", "/root/b"});
        const Qel::Mox2::Step none;
        model.addArrayProperty("T", Qel::Mox2::NodeScalar, Qel::Mox2::Array1d<float>{1}, ids[0], none);
        model.addArrayProperty("T", Qel::Mox2::ElementScalar, Qel::Mox2::Array1d<float>{2}, ids[1], none);
        model.close();
    }
    const auto run = runMox({"stat", "--values", path});
    EXPECT_TRUE(hasRow(run, "T \\(NodeScalar\\) +1 .*")) << run.output;
    EXPECT_TRUE(hasRow(run, "T \\(ElementScalar\\) +2 .*")) << run.output;
}

TEST_F(StatCommand, ComponentsAreNamedByWhatDiffersInTheNamesOfTheirVariables) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        const auto shape = model.addNode(Qel::Mox2::Shape, "S");
        const auto add = [&](const std::string& name, const std::vector<std::string>& variables) {
            Qel::Mox2::Attributes attributes;
            for (std::size_t i = 0; i < variables.size(); ++i) {
                attributes.set("Component " + std::to_string(i + 1), variables[i]);
            }
            model.addArrayProperty(name, Qel::Mox2::NodeSixA, Qel::Mox2::Array2d<float>(1, 6, 0.0F), shape,
                                   Qel::Mox2::Step{}, attributes);
        };
        add("A", {"s_xx_1", "s_yy_1", "s_zz_1", "s_xy_1", "s_yz_1", "s_zx_1"});
        add("B", {"DispX", "DispY", "DispZ", "RotX", "RotY", "RotZ"});
        add("C", {});
        add("D", {"u\u00E8", "u\u00E9", "u\u00EA", "u\u00EB", "u\u00EC", "u\u00ED"});
        model.close();
    }
    const auto run = runMox({"stat", "--values", path});
    for (const std::string title : {"A xx", "A zx", "B DispX", "B RotZ", "C xx", "C zx", "D \u00E9"}) {
        EXPECT_TRUE(hasRow(run, title + " +0 .*")) << title << run.output;
    }
}

TEST_F(StatCommand, NumbersWithoutAFiniteOneHaveNoMinimum) {
    {
        Qel::Mox2::Model model;
        model.saveTo(path, {true, "", "", ""});
        model.addNode(Qel::Mox2::Group, "G");
        const auto shape = model.addNode(Qel::Mox2::Shape, "S");
        model.addArrayProperty("T", Qel::Mox2::NodeScalar,
                               Qel::Mox2::Array1d<float>{std::numeric_limits<float>::quiet_NaN()}, shape,
                               Qel::Mox2::Step{});
        model.close();
    }
    EXPECT_TRUE(hasRow(runMox({"stat", "--values", path}), "T +- +- +- +- +- +1"));
    const auto json = nlohmann::json::parse(runMox({"stat", "--values", "--json", path}).output);
    EXPECT_FALSE(json.at("files").at(0).at("values").at(0).contains("min"));
}

TEST_F(StatCommand, GivesItsTablesAsJson) {
    const auto run = runMox({"stat", "--json", path, path});
    const auto files = nlohmann::json::parse(run.output).at("files");
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[1].at("blocks").at(0).at("name"), "Heavy Data");
    EXPECT_EQ(files[1].at("blocks").at(0).at("content"), 32);
    EXPECT_EQ(files[1].at("steps").at(2).at("name"), "Step 2");
    EXPECT_EQ(files[1].at("steps").at(2).at("shared"), 8);
}

TEST_F(StatCommand, JsonIsWholeThoughAFileFails) {
    const auto missing = folder.path("missing.mox");
    const auto run = runMox({"stat", "--json", missing, path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says("mox stat: " + missing + ": ")) << run.messages;
    EXPECT_EQ(nlohmann::json::parse(run.output).at("files").size(), 1U);
    EXPECT_EQ(
        nlohmann::json::parse(runMox({"stat", "--values", "--json", missing}).output).at("files").size(), 0U);
}

TEST_F(StatCommand, SeveralFilesHaveHeadingsAndAFailureDoesNotStopThem) {
    const auto missing = folder.path("missing.mox");
    const auto run = runMox({"stat", missing, path, path});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says("mox stat: " + missing + ": ")) << run.messages;
    const auto first = run.output.find(path + "\n\nblock ");
    ASSERT_NE(first, std::string::npos) << run.output;
    EXPECT_NE(run.output.find("\n\n" + path + "\n\nblock ", first + 1), std::string::npos) << run.output;
}

TEST_F(StatCommand, StepsWithoutValuesAreWrongUsage) {
    EXPECT_EQ(runMox({"stat", "--steps", path}).exitCode, 2);
    EXPECT_EQ(runMox({"stat", "--step", "1", path}).exitCode, 2);
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
