#include <Qel/Mox/Tree.h>

#include "Qel/Mox/StreamContent.h"
#include "Qel/Support/BlockSizeGuard.h"
#include "Qel/Support/CapturedStream.h"
#include "Qel/Support/HostNames.h"
#include "Qel/Support/RecordedLog.h"
#include "Support/Bytes.h"
#include "Support/TemporaryFolder.h"
#include "Support/Thrown.h"
#include "Support/TimeZoneGuard.h"

#include <Qel/Mox/Geometry.h>
#include <Qel/Mox/Group.h>
#include <Qel/Mox/NodeSets.h>
#include <Qel/Mox/Shape.h>
#include <Qel/Tnf/BlockStream.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>

namespace {

using Qel::Exception::InvalidObjectState;
using Qel::Exception::KeyNotFound;
using QelMox::Geometry;
using QelMox::Group;
using QelMox::Node;
using QelMox::NodeSets;
using QelMox::Shape;
using QelUtil::AttributeList;
using QelUtil::AttributeValue;
using Support::Bytes;
using Support::ByteVector;
using Support::Thrown;
using Support::throws;

const ByteVector TwelveBytes = {0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A, 0x31, 0x2E, 0x33, 0x00};

constexpr std::uint32_t One = 0x3F800000;

class MoxTree : public testing::Test {
protected:
    ByteVector stream(const std::string& name) { return Support::streamOf(tree.File.GetIndex(), name); }

    const Node* data(unsigned int id) const { return tree.GetReqNode(id).data; }

    void addGroup(const std::string& name) {
        tree.AddChildNode(std::make_unique<Group>(name, AttributeList()));
    }

    QelMox::Tree tree;
};

class MoxTreeFile : public MoxTree {
protected:
    void open(int mode = 0) { tree.SetStreamFile(path, 0, &mode); }

    Support::TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
};

// --- Construction

TEST_F(MoxTree, NewTreeHasARootWithoutDataAndNoFileVersion) {
    EXPECT_EQ(tree.GetCurrentId(), 1U);
    EXPECT_EQ(tree.GetNextId(), 2U);
    EXPECT_EQ(tree.GetCurrentNode().data, nullptr);
    EXPECT_EQ(tree.FileVersion, "");
    EXPECT_TRUE(tree.ModifierInfos.empty());
    EXPECT_TRUE(tree.ResultAttributesList.empty());
    EXPECT_EQ(tree.CurrentModifier.CollectHostInfo, 0);
    EXPECT_EQ(tree.File.GetStream(), nullptr);
}

TEST_F(MoxTree, ConstructorSeedsTheRandomNumbersWithZero) {
    std::srand(0);
    const int first = std::rand();
    std::srand(12345);
    const QelMox::Tree another;
    EXPECT_EQ(std::rand(), first);
}

TEST_F(MoxTree, DestructorDeletesTheDataOfEveryNode) {
    class Noting final : public Node {
    public:
        explicit Noting(int& count) : Node("noting"), deleted_(count) {}
        ~Noting() override { ++deleted_; }

    private:
        int& deleted_;
    };
    int deleted = 0;
    {
        QelMox::Tree other;
        other.GetCurrentNode().data = new Noting(deleted);
        other.AddChildNode(std::make_unique<Noting>(deleted));
        other.AddChildNode(std::make_unique<Noting>(deleted));
    }
    EXPECT_EQ(deleted, 3);
}

// --- The file

TEST_F(MoxTreeFile, SetStreamFileWritesTheTwelveBytesAtOnce) {
    open();
    EXPECT_EQ(tree.FileVersion, "1.3");
    EXPECT_NE(tree.File.GetStream(), nullptr);
    EXPECT_EQ(Support::bytesOf(path), TwelveBytes);
}

TEST_F(MoxTreeFile, SetStreamFileWithANonZeroModeOpensNothingAndChangesNothing) {
    for (const int mode : {1, 2, -1}) {
        open(mode);
        EXPECT_EQ(tree.FileVersion, "") << mode;
        EXPECT_EQ(tree.File.GetStream(), nullptr) << mode;
        EXPECT_FALSE(std::filesystem::exists(path)) << mode;
    }
}

TEST_F(MoxTreeFile, SetStreamFileOverwritesOnlyIfToldTo) {
    std::ofstream(path) << "old";
    const Thrown fileExists = {5, "File exists.", "Qel/Tnf/TnFile", "QelTnf::TnFile::OpenFileForWriting"};
    EXPECT_TRUE(throws<Qel::Exception::FileOpenException>(fileExists, [&] { open(); }));
    EXPECT_EQ(tree.FileVersion, "");
    EXPECT_EQ(Support::bytesOf(path), (ByteVector{'o', 'l', 'd'}));
    const int mode = 0;
    tree.SetStreamFile(path, 1, &mode);
    EXPECT_EQ(Support::bytesOf(path), TwelveBytes);
    QelMox::Tree other;
    EXPECT_NO_THROW(other.SetStreamFile(path, 2, &mode));
}

TEST_F(MoxTree, SaveFileWithoutOpenFileDoesNothing) {
    EXPECT_NO_THROW(tree.SaveFile(tree.File, ""));
    EXPECT_TRUE(tree.ModifierInfos.empty());
    EXPECT_TRUE(tree.File.GetIndex().GetBlockInfos().empty());
}

TEST_F(MoxTreeFile, SaveFileDoesNothingWhenTheFileFailedToOpen) {
    const int mode = 0;
    const std::string unopenable = folder.path("missing/model.mox");
    EXPECT_THROW(tree.SetStreamFile(unopenable, 1, &mode), Qel::Exception::MiscelleneousException);
    EXPECT_NO_THROW(tree.SaveFile(tree.File, ""));
    EXPECT_TRUE(tree.ModifierInfos.empty());
}

TEST_F(MoxTreeFile, SaveFileCompressesEveryNameAndClosesTheFile) {
    open();
    tree.SetRootGroup("root", {});
    tree.AddShapeNode("part");
    const float number = 1;
    tree.WriteStreamDataset(&number, 1, 1);
    tree.File.GetIndex().AddBlock("View Points");
    tree.SaveFile(tree.File, "");
    EXPECT_EQ(tree.File.GetStream(), nullptr);
    const auto& infos = tree.File.GetIndex().GetBlockInfos();
    ASSERT_EQ(infos.size(), 20U);
    const std::array<const char*, 7> names = {"Heavy Data", "View Points", "Mox Tree",          "Light Data",
                                              "Attributes", "Resources",   "Global Information"};
    for (std::size_t id = 0; id < names.size(); ++id) {
        EXPECT_EQ(infos[id].name, names[id]);
        EXPECT_EQ(infos[id].flags, 0x01) << names[id];
    }
    EXPECT_EQ(infos[7].flags, 0x00);
}

TEST_F(MoxTreeFile, SaveFilePutsTheCommentIntoTheModifier) {
    open();
    tree.SaveFile(tree.File, "remark");
    ASSERT_EQ(tree.ModifierInfos.size(), 1U);
    EXPECT_EQ(tree.ModifierInfos[0].Comment, "remark");
    EXPECT_EQ(tree.ModifierInfos[0].FormatVersion, "1.3");
}

// --- The root

TEST_F(MoxTree, SetRootGroupMakesTheRootCurrentAndAGroup) {
    const AttributeList attributes = {{"a", AttributeValue(1U)}};
    tree.SetRootGroup("root", attributes);
    const auto* const group = dynamic_cast<const Group*>(data(1));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->GetName(), "root");
    EXPECT_EQ(group->GetGroupKind(), 0);
    EXPECT_EQ(group->GetAttributes().at("a").integer, 1U);
    EXPECT_EQ(tree.GetCurrentId(), 1U);
}

TEST_F(MoxTree, SetRootGroupWithAKindStoresIt) {
    tree.SetRootGroup("root", 1, {});
    EXPECT_EQ(dynamic_cast<const Group&>(*data(1)).GetGroupKind(), 1);
}

TEST_F(MoxTree, SetRootShapeMakesAShapeWithoutGeometry) {
    tree.SetRootShape("root");
    EXPECT_NE(dynamic_cast<const Shape*>(data(1)), nullptr);
    EXPECT_EQ(tree.GetNodes().size(), 1U);
}

TEST_F(MoxTree, SecondRootLeavesTheFirstInPlaceAndMovesToTheRootBeforeItThrows) {
    tree.SetRootGroup("root", {});
    const auto alreadySetIn = [](std::string_view function) {
        return Thrown{17, "Root node properties are already set", "Qel/Mox/Tree", function};
    };
    addGroup("child");
    EXPECT_TRUE(throws<InvalidObjectState>(alreadySetIn("QelMox::Tree::SetRootGroup"),
                                           [&] { tree.SetRootGroup("other", {}); }));
    EXPECT_EQ(tree.GetCurrentId(), 1U);
    tree.SetCurrentId(2);
    EXPECT_TRUE(throws<InvalidObjectState>(alreadySetIn("QelMox::Tree::SetRootGroup"),
                                           [&] { tree.SetRootGroup("other", 1, {}); }));
    EXPECT_EQ(tree.GetCurrentId(), 1U);
    tree.SetCurrentId(2);
    EXPECT_TRUE(throws<InvalidObjectState>(alreadySetIn("QelMox::Tree::SetRootShape"),
                                           [&] { tree.SetRootShape("other"); }));
    EXPECT_EQ(tree.GetCurrentId(), 1U);
    EXPECT_EQ(data(1)->GetName(), "root");
    EXPECT_EQ(tree.GetNodes().size(), 2U);
}

// --- Merging

TEST_F(MoxTree, AddGroupNodeAddsAGroupWithDefaultsAndMakesItCurrent) {
    tree.SetRootGroup("root", {});
    tree.AddGroupNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 2U);
    const auto* const group = dynamic_cast<const Group*>(data(2));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->GetGroupKind(), 0);
    EXPECT_TRUE(group->GetAttributes().empty());
}

TEST_F(MoxTree, AddGroupNodeMovesToAGroupOfTheNameButNotToAShape) {
    tree.SetRootGroup("root", {});
    tree.AddShapeNode("a"); // 2 and 3
    tree.SetCurrentId(1);
    tree.AddGroupNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 4U);
    tree.SetCurrentId(1);
    tree.AddGroupNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 4U);
    EXPECT_EQ(tree.GetNodes().size(), 4U);
}

TEST_F(MoxTree, AddShapeNodeAddsAShapeAndItsGeometryAndMovesToTheGeometry) {
    tree.SetRootGroup("root", {});
    tree.AddShapeNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 3U);
    EXPECT_NE(dynamic_cast<const Shape*>(data(2)), nullptr);
    EXPECT_NE(dynamic_cast<const Geometry*>(data(3)), nullptr);
    EXPECT_EQ(data(3)->GetName(), "a");
    tree.SetCurrentId(1);
    tree.AddShapeNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 3U);
    EXPECT_EQ(tree.GetNodes().size(), 3U);
}

TEST_F(MoxTree, AddShapeNodeGivesAShapeWithoutGeometryOne) {
    tree.SetRootGroup("root", {});
    tree.AddChildNode(std::make_unique<Shape>("a"));
    tree.SetCurrentId(1);
    tree.AddShapeNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 3U);
    EXPECT_EQ(tree.GetReqNode(3).parent, 2U);
}

TEST_F(MoxTree, MergeFindsTheOldestOfSeveralGroupsOfOneName) {
    tree.SetRootGroup("root", {});
    addGroup("a");
    tree.SetCurrentId(1);
    addGroup("a");
    tree.SetCurrentId(1);
    tree.AddGroupNode("a");
    EXPECT_EQ(tree.GetCurrentId(), 2U);
}

TEST_F(MoxTree, AddChildNodeBelowAnUnknownCurrentNodeThrowsAndChangesNothing) {
    const Thrown unknown = {14, "Key not found", "Qel/Adt/AdtTree", "::GetCurrentNode"};
    tree.SetRootGroup("root", {});
    tree.PutCurrentId(99);
    EXPECT_TRUE(throws<KeyNotFound>(unknown, [&] { addGroup("a"); }));
    EXPECT_EQ(tree.GetNodes().size(), 1U);
    EXPECT_EQ(tree.GetNextId(), 2U);
    EXPECT_EQ(tree.GetCurrentId(), 99U);
}

// --- Looking up

TEST_F(MoxTree, FindNodeByPathFindsByNameAloneAndMovesToTheRoot) {
    tree.SetRootGroup("a", {});
    tree.AddShapeNode("b");
    EXPECT_EQ(tree.FindNodeByPath("/a/b", "/"), 2U);
    EXPECT_EQ(tree.GetCurrentId(), 1U);
    EXPECT_EQ(tree.FindNodeByPath("/a/b/b", "/"), 3U);
    EXPECT_EQ(tree.FindNodeByPath("/a/c", "/"), 0U);
    EXPECT_EQ(tree.FindNodeByPath("/c/b", "/"), 0U);
    EXPECT_EQ(tree.FindNodeByPath("/a/b/", "/"), 0U);
    EXPECT_EQ(tree.FindNodeByPath("", "/"), 0U);
    EXPECT_EQ(tree.GetCurrentId(), 1U);
}

TEST_F(MoxTree, FindNodeByPathLooksForTheRootAtTheBeginningAlone) {
    tree.SetRootGroup("a", {});
    addGroup("b");
    addGroup("a");
    EXPECT_EQ(tree.FindNodeByPath("/a/b/a", "/"), 3U);
    EXPECT_EQ(tree.FindNodeByPath("/x/b/a", "/"), 0U);
}

TEST_F(MoxTree, FindNodeByPathOfTheRootAloneThrowsWithTheRootCurrent) {
    tree.SetRootGroup("a", {});
    addGroup("b");
    try {
        tree.FindNodeByPath("/a", "/");
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& caught) {
        EXPECT_STREQ(caught.what(), "invalid string position");
    }
    EXPECT_EQ(tree.GetCurrentId(), 1U);
}

TEST_F(MoxTree, FindNodeByPathSkipsAsManyCharactersAfterTheRootAsTheSeparatorHas) {
    tree.SetRootGroup("a", {});
    addGroup("b");
    EXPECT_EQ(tree.FindNodeByPath("::aXYb", "::"), 2U);
    EXPECT_EQ(tree.FindNodeByPath("::aXb", "::"), 0U);
    EXPECT_THROW(tree.FindNodeByPath("::aX", "::"), std::out_of_range);
}

TEST_F(MoxTree, FindNodeByPathSplitsAtTheWholeSeparatorSoThatNamesMayHoldItsCharacters) {
    tree.SetRootGroup("a|", {});
    addGroup("b:c");
    addGroup("d|e");
    addGroup(":|");
    EXPECT_EQ(tree.FindNodeByPath("|:a||:b:c", "|:"), 2U);
    EXPECT_EQ(tree.FindNodeByPath("|:a||:b:c|:d|e", "|:"), 3U);
    EXPECT_EQ(tree.FindNodeByPath("|:a||:b:c|:d|e|::|", "|:"), 4U);
    EXPECT_EQ(tree.FindNodeByPath("|:a||:b:c:|d|e", "|:"), 0U);
}

// No name is ever passed, and the search goes from child to child of empty name.
TEST_F(MoxTree, FindNodeByPathWithoutASeparatorEndsWhereNoChildHasAnEmptyName) {
    tree.SetRootGroup("a", {});
    addGroup("");
    addGroup("b");
    EXPECT_EQ(tree.FindNodeByPath("ab", ""), 0U);
    EXPECT_EQ(tree.FindNodeByPath("a", ""), 0U);
}

TEST_F(MoxTree, FindNodeByPathFindsAChildOfEmptyName) {
    tree.SetRootGroup("a", {});
    addGroup("");
    EXPECT_EQ(tree.FindNodeByPath("/a/", "/"), 2U);
}

TEST_F(MoxTree, FindNodeByPathWithoutARootGivesZero) {
    EXPECT_EQ(tree.FindNodeByPath("/a/b", "/"), 0U);
    EXPECT_EQ(tree.GetCurrentId(), 1U);
}

// --- Datasets

TEST_F(MoxTree, DatasetsFollowEachOtherInHeavyData) {
    const std::array<float, 6> floats = {};
    const std::array<unsigned int, 2> integers = {0xA3A2A1A0, 0xB3B2B1B0};
    EXPECT_EQ(tree.WriteStreamDataset(floats.data(), 2, 3), 0U);
    EXPECT_EQ(tree.WriteStreamDataset(integers.data(), 2, 1), 24U);
    const ByteVector expected =
        Bytes().zeros(24).u8(0xA0).u8(0xB0).u8(0xA1).u8(0xB1).u8(0xA2).u8(0xB2).u8(0xA3).u8(0xB3);
    EXPECT_EQ(stream("Heavy Data"), expected);
}

TEST_F(MoxTree, EmptyDatasetHasAPositionAndMakesNoBlock) {
    const float number = 1;
    EXPECT_EQ(tree.WriteStreamDataset(&number, 0, 3), 0U);
    EXPECT_EQ(tree.WriteStreamDataset(&number, 1, 0), 0U);
    EXPECT_TRUE(tree.File.GetIndex().GetBlockInfos().empty());
    EXPECT_EQ(tree.WriteStreamDataset(&number, 1, 1), 0U);
    EXPECT_EQ(tree.WriteStreamDataset(&number, 0, 3), 4U);
}

// --- The log

Support::LogLines linesOf(const std::string& function, const std::vector<std::string>& texts) {
    return Support::linesOf("Qel/Mox/Tree", "QelMox::Tree::" + function, texts);
}

TEST_F(MoxTreeFile, SetStreamFileLogsThePathBeforeItOpensTheFile) {
    const Support::RecordedLog log;
    open(1);
    EXPECT_EQ(log.lines(), Support::LogLines());
    const int mode = 0;
    const std::string unopenable = folder.path("missing/model.mox");
    EXPECT_THROW(tree.SetStreamFile(unopenable, 1, &mode), Qel::Exception::MiscelleneousException);
    open();
    EXPECT_EQ(log.lines(), linesOf("SetStreamFile", {"Setting mox file \"" + unopenable + "\"",
                                                     "Setting mox file \"" + path + "\""}));
}

TEST_F(MoxTree, DatasetIsLoggedWithTheNumberOfItsValuesItsWidthAndTheirSize) {
    const std::array<float, 195> floats = {};
    const std::array<unsigned int, 2> integers = {};
    const Support::RecordedLog log;
    tree.WriteStreamDataset(floats.data(), 3, 65); // "A", were it taken for a character.
    ASSERT_GE(log.lines().size(), 1U);
    EXPECT_EQ(Support::LogLines{log.lines().front()},
              linesOf("WriteStreamDataset", {"Writing Dataset of size 195 width 65 datatype size 4"}));
    const std::size_t first = log.lines().size();
    tree.WriteStreamDataset(integers.data(), 2, 1);
    ASSERT_GT(log.lines().size(), first);
    EXPECT_EQ(Support::LogLines{log.lines()[first]},
              linesOf("WriteStreamDataset", {"Writing Dataset of size 2 width 1 datatype size 4"}));
}

TEST_F(MoxTree, EmptyDatasetIsLoggedAsAnyOther) {
    const float number = 1;
    const Support::RecordedLog log;
    tree.WriteStreamDataset(&number, 0, 3);
    EXPECT_EQ(log.lines(),
              linesOf("WriteStreamDataset", {"Writing Dataset of size 0 width 3 datatype size 4"}));
}

TEST_F(MoxTree, SaveOfTheTreeIsLoggedAtItsStartAndItsEndWithTrailingBlanks) {
    const Support::RecordedLog log;
    tree.SaveTree(tree.File);
    EXPECT_EQ(log.lines(), linesOf("SaveTree", {"Saving mox tree ... ", "Mox tree saved. "}));
}

TEST_F(MoxTree, SaveOfTheTreeThatFailsLogsItsStartAlone) {
    tree.SetRootGroup("r", {});
    tree.AddShapeNode("s");
    dynamic_cast<Geometry&>(*tree.GetCurrentNode().data).FindOrAddDataset("key");
    const Support::RecordedLog log;
    EXPECT_THROW(tree.SaveTree(tree.File), KeyNotFound);
    EXPECT_EQ(log.lines(), linesOf("SaveTree", {"Saving mox tree ... "}));
}

TEST_F(MoxTree, SaveOfTheGlobalInformationIsLoggedAtItsStartAndItsEnd) {
    const Support::RecordedLog log;
    tree.SaveGlobalInfo(tree.File, "");
    EXPECT_EQ(log.lines(),
              linesOf("SaveGlobalInfo", {"Saving global information ...", "Global information saved."}));
}

TEST_F(MoxTree, SaveFileWithoutOpenFileLogsNothing) {
    const Support::RecordedLog log;
    tree.SaveFile(tree.File, "");
    EXPECT_EQ(log.lines(), Support::LogLines());
}

// --- Attribute records

class MoxTreeAttributes : public MoxTree {
protected:
    ByteVector recordOf(const AttributeList& list) {
        const std::string name = "Attributes";
        QelTnf::BlockStream attributes(tree.File.GetIndex(), name);
        QelMox::Tree::WriteAttributes(attributes, list);
        return stream("Attributes");
    }
};

TEST_F(MoxTreeAttributes, EmptyListWritesSixEmptyLists) {
    EXPECT_EQ(recordOf({}), ByteVector(24, 0));
}

TEST_F(MoxTreeAttributes, KeysStandInOrderAndTheirKindsSayWhereTheirValuesAre) {
    const ByteVector expected = Bytes()
                                    .u32(3)
                                    .text("a")
                                    .text("b")
                                    .text("c")
                                    .u32(3)
                                    .u8(0)
                                    .u8(2)
                                    .u8(0)
                                    .u32(2)
                                    .u32(5)
                                    .u32(0xFFFFFFFF)
                                    .u32(0)
                                    .u32(0)
                                    .u32(1)
                                    .text("x");
    EXPECT_EQ(recordOf({{"b", AttributeValue(std::string_view("x"))},
                        {"a", AttributeValue(5U)},
                        {"c", AttributeValue(0xFFFFFFFFU)}}),
              expected);
}

TEST_F(MoxTreeAttributes, ValuesOfEachKindFollowAsIntegersFloatsDoublesAndTexts) {
    const ByteVector expected = Bytes()
                                    .u32(4)
                                    .text("a")
                                    .text("b")
                                    .text("c")
                                    .text("d")
                                    .u32(4)
                                    .u8(2)
                                    .u8(3)
                                    .u8(1)
                                    .u8(0)
                                    .u32(1)
                                    .u32(7)
                                    .u32(1)
                                    .bits({0x3FC00000})
                                    .u32(1)
                                    .u64(0x4004000000000000)
                                    .u32(1)
                                    .text("x");
    EXPECT_EQ(recordOf({{"a", AttributeValue(std::string_view("x"))},
                        {"b", AttributeValue(2.5)},
                        {"c", AttributeValue(1.5F)},
                        {"d", AttributeValue(7U)}}),
              expected);
}

TEST_F(MoxTreeAttributes, TextOf256BytesIsWrittenWhole) {
    const std::string text(256, 'x');
    const ByteVector expected = Bytes().u32(1).text("a").u32(1).u8(2).zeros(12).u32(1).text(text);
    EXPECT_EQ(recordOf({{"a", AttributeValue(std::string_view(text))}}), expected);
}

// The stream has taken the step from the environment when it was made.
TEST_F(MoxTreeAttributes, RecordLeavesTheGrowthStepAsItIsWhateverTheVariable) {
    Support::BlockSizeGuard variable;
    const std::string name = "Attributes";
    QelTnf::BlockStream attributes(tree.File.GetIndex(), name);
    variable.set("16");
    QelMox::Tree::WriteAttributes(attributes, {{"a", AttributeValue(1U)},
                                               {"b", AttributeValue(1.0F)},
                                               {"c", AttributeValue(std::string_view("text"))},
                                               {"d", AttributeValue(1.0)}});
    EXPECT_EQ(QelTnf::defaultBlockSize, 10'485'760U);
}

TEST_F(MoxTreeAttributes, UnknownKindIsListedWithoutAValue) {
    AttributeValue value;
    value.kind = AttributeValue::Kind(4);
    const ByteVector expected = Bytes().u32(1).text("a").u32(1).u8(4).zeros(16);
    EXPECT_EQ(recordOf({{"a", value}}), expected);
}

// --- Saving the tree

struct NodeRecord {
    // The ids of the node, its parent, its siblings, its first and its last child.
    std::array<std::uint32_t, 6> links;
    const char* name;
    const char* type;
    const char* version;
    std::uint64_t lightPosition;
};

// The node count and a record for each node.
ByteVector recordsOf(std::initializer_list<NodeRecord> records) {
    Bytes bytes;
    bytes.u32(static_cast<std::uint32_t>(records.size()));
    for (const NodeRecord& record : records) {
        for (const std::uint32_t link : record.links) {
            bytes.u32(link);
        }
        bytes.text(record.name).text(record.type).text(record.version).u64(record.lightPosition);
    }
    return bytes;
}

TEST_F(MoxTree, TreeWithoutRootIsACountAndOneEmptyRecord) {
    tree.SaveTree(tree.File);
    const ByteVector expected = Bytes().u32(1).u32(1).zeros(20).zeros(12).u64(0);
    EXPECT_EQ(stream("Mox Tree"), expected);
    EXPECT_EQ(tree.File.GetIndex().GetBlockInfos()[1].name, "\x0b"
                                                            "Empty Block ");
}

TEST_F(MoxTree, RecordsOfASmallTree) {
    tree.SetRootGroup("r", 1, {});
    tree.AddShapeNode("s");
    tree.SetCurrentId(1);
    addGroup("g");
    tree.SaveTree(tree.File);
    // The shape has nothing in the light data, its geometry a count of zero.
    EXPECT_EQ(stream("Mox Tree"), recordsOf({{{1, 0, 0, 0, 2, 4}, "r", "Group", "0.4", 0},
                                             {{2, 1, 0, 4, 3, 3}, "s", "Shape", "0.2", 41},
                                             {{3, 2, 0, 0, 0, 0}, "s", "Geometry", "0.7", 41},
                                             {{4, 1, 2, 0, 0, 0}, "g", "Group", "0.4", 45}}));
}

using Sizes = std::vector<std::uint32_t>;

// The sizes of a name's blocks if values of these sizes go into them: a value goes into the last block unless that
// holds as much as the limit.
Sizes dividedAt(std::uint32_t limit, const Sizes& values) {
    Sizes blocks;
    for (const std::uint32_t value : values) {
        if (blocks.empty() || blocks.back() >= limit) {
            blocks.push_back(0);
        }
        blocks.back() += value;
    }
    return blocks;
}

Sizes sizesOf(const QelTnf::Index& index, const std::string& name) {
    Sizes sizes;
    for (std::size_t id = 0; id < index.GetBlocks().size(); ++id) {
        if (index.GetBlockInfos()[id].name == name) {
            sizes.push_back(index.GetBlocks()[id].GetSize());
        }
    }
    return sizes;
}

// The values of a root group with two attributes, of a shape and of its geometry with one dataset, in their order.
TEST_F(MoxTree, LimitThatFallsAnywhereAmongTheValuesOfANodeDividesOnlyBetweenThem) {
    const Sizes treeValues = {4,                                          // the count
                              4, 4, 4, 4, 4, 4, 5, 9,  7, 8,              // "r", "Group", "0.4"
                              4, 4, 4, 4, 4, 4, 6, 9,  7, 8,              // "ss", "Shape", "0.2"
                              4, 4, 4, 4, 4, 4, 6, 12, 7, 8};             // "ss", "Geometry", "0.7"
    const Sizes lightValues = {12, 16, 12, 1,                             // the group
                               4,  6,  4,  1, 4, 1, 1, 1, 4, 4, 1, 8, 1}; // the geometry
    const Sizes attributeValues = {14, 6, 8, 4, 4, 9, 4, 4, 4, 4, 4, 4};
    for (std::uint32_t limit = 0; limit <= 180; ++limit) {
        const Support::BlockSizeGuard variable(std::to_string(limit));
        QelMox::Tree limited;
        limited.SetRootGroup("r", {{"a", AttributeValue(7U)}, {"b", AttributeValue(std::string_view("t"))}});
        limited.AddShapeNode("ss");
        auto& geometry = dynamic_cast<Geometry&>(*limited.GetCurrentNode().data);
        geometry.GetDataset(geometry.FindOrAddDataset("ab")).position = 9;
        limited.SaveTree(limited.File);
        const QelTnf::Index& index = limited.File.GetIndex();
        ASSERT_EQ(sizesOf(index, "Mox Tree"), dividedAt(limit, treeValues)) << limit;
        ASSERT_EQ(sizesOf(index, "Light Data"), dividedAt(limit, lightValues)) << limit;
        ASSERT_EQ(sizesOf(index, "Attributes"), dividedAt(limit, attributeValues)) << limit;
        ASSERT_EQ(sizesOf(index, "Resources"), Sizes{84}) << limit;
        ASSERT_EQ(Support::streamOf(index, "Mox Tree"),
                  recordsOf({{{1, 0, 0, 0, 2, 2}, "r", "Group", "0.4", 0},
                             {{2, 1, 0, 0, 3, 3}, "ss", "Shape", "0.2", 41},
                             {{3, 2, 0, 0, 0, 0}, "ss", "Geometry", "0.7", 41}}))
            << limit;
        const Bytes attributes = Bytes().u32(2).text("a").text("b").u32(2).u8(0).u8(2).u32(1).u32(7).zeros(8);
        ASSERT_EQ(Support::streamOf(index, "Attributes"),
                  Bytes().append(attributes).u32(1).text("t").zeros(24))
            << limit;
    }
}

TEST_F(MoxTree, DescriptorOfAGroupTakes41BytesOfLightData) {
    tree.SetRootGroup("r", 1, {});
    auto& group = dynamic_cast<Group&>(*tree.GetCurrentNode().data);
    group.SetTranslation({1, 2, 4});
    tree.SaveTree(tree.File);
    const ByteVector expected =
        Bytes().bits({One, 0x40000000, 0x40800000}).bits({0, 0, One, 0}).bits({One, One, One}).u8(1);
    EXPECT_EQ(expected.size(), 41U);
    EXPECT_EQ(stream("Light Data"), expected);
    EXPECT_EQ(stream("Attributes"), ByteVector(24, 0));
}

TEST_F(MoxTree, EachShapeHasAMaterialInTheResourcesInOrder) {
    tree.SetRootShape("r");
    tree.AddShapeNode("s");
    dynamic_cast<Shape&>(*tree.GetReqNode(2).data).GetMaterial().SetTransparency(1);
    tree.SaveTree(tree.File);
    const ByteVector resources = stream("Resources");
    ASSERT_EQ(resources.size(), 168U);
    EXPECT_EQ(Support::slice(resources, 75, 4), (ByteVector{0, 0, 0, 0}));
    EXPECT_EQ(Support::slice(resources, 159, 4), (ByteVector{0, 0, 0x80, 0x3F}));
}

TEST_F(MoxTree, ShapeWithoutDatasetsHasAGeometryThatWritesACountOfZero) {
    tree.SetRootShape("r");
    tree.AddShapeNode("s");
    tree.SaveTree(tree.File);
    EXPECT_EQ(stream("Light Data"), (ByteVector{0, 0, 0, 0}));
}

TEST_F(MoxTree, NodeSetsHaveADescriptorOf20BytesAndTheirPayloadInHeavyData) {
    const float number = 1;
    tree.WriteStreamDataset(&number, 1, 1);
    tree.SetRootGroup("r", {});
    auto nodeSets = std::make_unique<NodeSets>("sets");
    nodeSets->sets = {{"ab", {{1, 10}}}};
    tree.AddChildNode(std::move(nodeSets));
    tree.SaveTree(tree.File);
    // The position after the group's 41 bytes.
    const ByteVector expected = Bytes().u32(16).u32(1).u64(4).u32(46);
    EXPECT_EQ(Support::slice(stream("Light Data"), 41, 99), expected);
    EXPECT_EQ(stream("Heavy Data").size(), 50U);
}

// A geometry of the version whose record has the numbers with it.
class GeometryWithNumbers final : public Geometry {
public:
    using Geometry::Geometry;

    std::string GetVersion() const override { return "0.5"; }
};

TEST_F(MoxTree, NumbersOfAGeometryOfVersion05AreInHeavyData) {
    const std::array<std::uint32_t, 2> numbers = {1, 2};
    tree.SetRootGroup("r", {});
    auto geometry = std::make_unique<GeometryWithNumbers>("g");
    auto& entry = geometry->GetDataset(geometry->FindOrAddDataset("key"));
    entry.values.sizeInBytes = 8;
    entry.values.data = numbers.data();
    entry.position = 0;
    tree.AddChildNode(std::move(geometry));
    tree.SaveTree(tree.File);
    EXPECT_EQ(stream("Heavy Data"), Bytes().u32(1).u32(2));
}

// Each value has a block of its own, and the blocks are in the order of the values.
TEST_F(MoxTree, ValuesOfAllDescriptorsComeInTheirOrder) {
    const Support::BlockSizeGuard oneValueEach("0");
    tree.SetRootGroup("r", {});
    auto nodeSets = std::make_unique<NodeSets>("sets");
    tree.AddChildNode(std::move(nodeSets));
    tree.SetCurrentId(1);
    tree.AddShapeNode("s");
    auto& geometry = dynamic_cast<Geometry&>(*tree.GetCurrentNode().data);
    auto& entry = geometry.GetDataset(geometry.FindOrAddDataset("key"));
    entry.isLink = true;
    tree.SaveTree(tree.File);
    // The first letters of the names: Mox Tree, Light Data, Attributes, Heavy Data, Resources.
    std::string names;
    for (const auto& info : tree.File.GetIndex().GetBlockInfos()) {
        if (info.name[0] != '\x0b') {
            names += info.name[0];
        }
    }
    const std::string record = "MMMMMMMMMM";
    EXPECT_EQ(names, "M" + record + "LLL" + "AAAAAA" + "L" // the group
                         + record + "HHHHH" + "LLLL"       // the node sets
                         + record + "R"                    // the shape
                         + record + "LLLLLLL" + "AAAAAA"); // the geometry and its link
}

TEST_F(MoxTree, PlainNodeIsItsRecordAlone) {
    tree.SetRootGroup("r", {});
    tree.AddChildNode(std::make_unique<Node>("n"));
    tree.SaveTree(tree.File);
    // The position after the count and the record of the root, 24 + 5 + 9 + 7 + 8 bytes.
    const ByteVector expected = Bytes().u32(2).u32(1).zeros(16).text("n").text("Node").text("0.1").u64(41);
    EXPECT_EQ(Support::slice(stream("Mox Tree"), 57, 99), expected);
    EXPECT_EQ(stream("Light Data").size(), 41U);
}

TEST_F(MoxTree, DatasetWithoutPositionEndsTheSave) {
    tree.SetRootGroup("r", {});
    tree.AddShapeNode("s");
    dynamic_cast<Geometry&>(*tree.GetCurrentNode().data).FindOrAddDataset("key");
    const Thrown missing = {14, "Key not found", "Qel/Mox/Geometry", "QelMox::Geometry::WriteTn"};
    EXPECT_TRUE(throws<KeyNotFound>(missing, [&] { tree.SaveTree(tree.File); }));
}

// --- Saving the global information

TEST_F(MoxTree, GlobalInformationIsOneModifierInfoAndNoResultAttributes) {
    tree.FileVersion = "1.3";
    tree.CurrentModifier.SourceName = "Solver";
    tree.SaveGlobalInfo(tree.File, "remark");
    ASSERT_EQ(tree.ModifierInfos.size(), 1U);
    const std::string& date = tree.ModifierInfos[0].Date;
    const ByteVector expected = Bytes()
                                    .u32(1)
                                    .u32(54 + static_cast<std::uint32_t>(date.size()))
                                    .text("0.1")
                                    .text("Solver")
                                    .text("")
                                    .text("1.3")
                                    .text(date)
                                    .text("")
                                    .text("")
                                    .text("remark")
                                    .u32(0);
    EXPECT_EQ(stream("Global Information"), expected);
    EXPECT_EQ(tree.File.GetIndex().GetBlockInfos()[0].flags, 0x01);
    EXPECT_EQ(tree.CurrentModifier.Comment, "remark");
}

TEST_F(MoxTree, EachBlockOfTheGlobalInformationIsCompressed) {
    const Support::BlockSizeGuard oneValueEach("0");
    tree.SaveGlobalInfo(tree.File, "");
    const auto& infos = tree.File.GetIndex().GetBlockInfos();
    EXPECT_EQ(infos[0].flags, 0x01);
    EXPECT_EQ(infos[1].name, "Global Information");
    EXPECT_EQ(infos[1].flags, 0x01);
}

// The date of a second in a zone called FAR, 13:45 hours east of UTC.
std::string dateInFar(std::time_t time) {
    const std::time_t shifted = time + 13 * 3600 + 45 * 60;
    const std::tm* const calendar = std::gmtime(&shifted);
    std::array<char, 100> text{};
    std::strftime(text.data(), text.size(), "%a %b %d %H:%M:%S %Y FAR", calendar);
    return text.data();
}

TEST_F(MoxTree, DateIsTheLocalTimeWithYearAndZone) {
    const Support::TimeZoneGuard zone("FAR-13:45");
    const std::time_t before = std::time(nullptr);
    tree.SaveGlobalInfo(tree.File, "");
    const std::time_t after = std::time(nullptr);
    std::set<std::string> possible;
    for (std::time_t time = before; time <= after; ++time) {
        possible.insert(dateInFar(time));
    }
    EXPECT_TRUE(possible.contains(tree.CurrentModifier.Date))
        << tree.CurrentModifier.Date << " instead of " << *possible.begin();
    const std::regex form(
        "[A-Z][a-z][a-z] [A-Z][a-z][a-z] [0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9] [0-9]+ FAR");
    EXPECT_TRUE(std::regex_match(tree.CurrentModifier.Date, form)) << tree.CurrentModifier.Date;
}

// Day, time and year take 25 bytes before the zone's name.
TEST_F(MoxTree, DateOf119BytesIsWholeAndALongerOneIsEmpty) {
#if defined(_WIN32)
    GTEST_SKIP() << "needs a system that takes a zone's name of any length";
#endif
    const std::string longest(94, 'A');
    {
        const Support::TimeZoneGuard zone("<" + longest + ">0");
        tree.SaveGlobalInfo(tree.File, "");
        ASSERT_EQ(tree.CurrentModifier.Date.size(), 119U);
        EXPECT_EQ(tree.CurrentModifier.Date.substr(25), longest);
    }
    const Support::TimeZoneGuard zone("<" + longest + "A>0");
    tree.SaveGlobalInfo(tree.File, "");
    EXPECT_EQ(tree.CurrentModifier.Date, "");
}

TEST_F(MoxTree, ComputerAndUserAreCollectedOnlyWhenAskedFor) {
    tree.SaveGlobalInfo(tree.File, "");
    EXPECT_EQ(tree.CurrentModifier.Computer, "");
    EXPECT_EQ(tree.CurrentModifier.User, "");
    tree.CurrentModifier.CollectHostInfo = 1;
    tree.SaveGlobalInfo(tree.File, "");
    const std::optional<std::string> computer = Support::hostName();
    const std::optional<std::string> user = Support::nameOfUser();
    if (!computer || !user) {
        GTEST_SKIP() << "needs a system that gives its names in another way";
    }
    EXPECT_EQ(tree.CurrentModifier.Computer, computer->substr(0, 79));
    EXPECT_EQ(tree.CurrentModifier.User, user->substr(0, 79));
    ASSERT_EQ(tree.ModifierInfos.size(), 2U);
    EXPECT_EQ(tree.ModifierInfos[0].Computer, "");
    EXPECT_EQ(tree.ModifierInfos[1].Computer, computer->substr(0, 79));
    EXPECT_EQ(tree.ModifierInfos[1].User, user->substr(0, 79));
    tree.CurrentModifier.Computer = "another";
    tree.CurrentModifier.CollectHostInfo = 0xFF;
    tree.SaveGlobalInfo(tree.File, "");
    EXPECT_EQ(tree.CurrentModifier.Computer, computer->substr(0, 79));
}

TEST_F(MoxTreeFile, SavePrintsNothing) {
    const Support::CapturedStream output(std::cout);
    const Support::CapturedStream errors(std::cerr);
    open();
    tree.SaveFile(tree.File, "");
    EXPECT_EQ(output.str(), "");
    EXPECT_EQ(errors.str(), "");
}

} // namespace
