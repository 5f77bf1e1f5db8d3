#include "diff/compareProperties.h"

#include <gtest/gtest.h>

#include <limits>

using MoxTool::DifferenceList;

namespace {

// Lines such as "diffuse 1 != 2". A missing value is "none".
std::vector<std::string> linesOf(DifferenceList& list) {
    std::vector<std::string> lines;
    for (const auto& each : list.take()) {
        lines.push_back(each.what + " " + (each.a ? each.a->dump() : "none") +
                        " != " + (each.b ? each.b->dump() : "none"));
    }
    return lines;
}

using Lines = std::vector<std::string>;

MoxReader::GlobalInformation savedBy(const std::string& source, const std::string& date) {
    MoxReader::ModifierInfo save;
    save.sourceName = source;
    save.date = date;
    return {{save}};
}

} // namespace

TEST(CompareNodeSets, ReportsWhatIsMissingAndTheFirstMemberThatDiffers) {
    DifferenceList list({});
    MoxTool::compareNodeSets(
        list, {{"same", {{1, 2}}}, {"moved", {{1, 2}, {3, 4}}}, {"short", {{1, 2}}}, {"old", {}}},
        {{"moved", {{1, 2}, {3, 5}}}, {"same", {{1, 2}}}, {"short", {}}, {"new", {}}});
    EXPECT_EQ(linesOf(list),
              (Lines{"node set \"moved\", member 1 [3,4] != [3,5]",
                     "node set \"short\" \"1 members\" != \"0 members\"",
                     "node set \"old\" \"0 members\" != none", "node set \"new\" none != \"0 members\""}));
}

TEST(CompareSaves, DateCountsOnlyIfAsked) {
    const auto a = savedBy("Solver", "Monday");
    const auto b = savedBy("Other", "Tuesday");
    DifferenceList without({});
    MoxTool::compareSaves(without, a, b, false);
    EXPECT_EQ(linesOf(without), (Lines{"save 1: source name \"Solver\" != \"Other\""}));
    DifferenceList with({});
    MoxTool::compareSaves(with, a, b, true);
    EXPECT_EQ(linesOf(with), (Lines{"save 1: source name \"Solver\" != \"Other\"",
                                    "save 1: date \"Monday\" != \"Tuesday\""}));
}

TEST(CompareSaves, ReportsIfOneFileWasSavedMoreOften) {
    DifferenceList list({});
    MoxTool::compareSaves(list, {{{}, {}}}, {{{}}}, true);
    EXPECT_EQ(linesOf(list), (Lines{"saves 2 != 1"}));
}

TEST(CompareMaterials, FourthValueOfTheEmissiveColourDoesNotCount) {
    MoxReader::Material a;
    MoxReader::Material b;
    a.emissive = {0, 0, 0, 9};
    b.emissive = {0, 0, 0, std::numeric_limits<float>::quiet_NaN()};
    DifferenceList list({});
    MoxTool::compareMaterials(list, a, b);
    EXPECT_EQ(linesOf(list), Lines{});
}

TEST(CompareMaterials, ReportsEachFieldOnItsOwn) {
    MoxReader::Material a;
    MoxReader::Material b;
    b.ambient = {0, 0, 0, 0.5F};
    b.shininess = 0.1F;
    b.flag = 1;
    DifferenceList list({});
    MoxTool::compareMaterials(list, a, b);
    EXPECT_EQ(linesOf(list), (Lines{"material: ambient [0.0,0.0,0.0,0.0] != [0.0,0.0,0.0,0.5]",
                                    "material: shininess 0.0 != 0.1", "material: flag 0 != 1"}));
}

TEST(CompareAttributes, KindsShowWhereTheyDiffer) {
    DifferenceList list({});
    list.compareAttributes({{"gone", 1U}, {"kind", 1U}, {"text", "a"}, {"wide", 1.0}},
                           {{"kind", 1.0F}, {"new", 2.5}, {"text", "b"}, {"wide", 1.0}});
    EXPECT_EQ(linesOf(list),
              (Lines{"attribute \"gone\" 1 != none", "attribute \"kind\" {\"integer\":1} != {\"float\":1.0}",
                     "attribute \"text\" \"a\" != \"b\"", "attribute \"new\" none != 2.5"}));
}

TEST(CompareAttributes, FloatsHaveTheTolerance) {
    DifferenceList list(MoxTool::Tolerance{0.5, 0});
    list.compareAttributes({{"f", 1.0F}, {"d", 1.0}, {"i", 1U}}, {{"f", 1.5F}, {"d", 1.5}, {"i", 2U}});
    EXPECT_EQ(linesOf(list), (Lines{"attribute \"i\" 1 != 2"}));
}
