#include "Support/Bytes.h"
#include "Support/EnvironmentGuard.h"
#include "Support/TemporaryFolder.h"
#include "api/Support/PublicNames.h"
#include "api/Support/SavedModel.h"

#include <gtest/gtest.h>

#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace Api {

using Support::BlockSizeVariable;
using Support::Bytes;
using Support::EnvironmentGuard;
using Support::TemporaryFolder;

namespace {

using ByteVector = std::vector<std::uint8_t>;

constexpr std::uint32_t One = 0x3F800000; // 1.0

// A dataset's name, the separator, and a step's name.
const std::string KeyA = "T\x1e"
                         "A";
const std::string KeyB = "T\x1e"
                         "B";

// A marked root group with attributes, a shape below it, and numbers on its geometry for two steps.
class SavedContent : public testing::Test {
protected:
    SavedContent() {
        SaverOptions options;
        options.sourceName = "Solver";
        options.sourceVersion = "7.2";
        Model model;
        model.saveTo(path, options);
        model.addNode(RootMarkedGroup, "r", groupAttributes());
        model.addNode(Shape, "s");
        Attributes attributes;
        attributes.set("Category", "Vibration");
        StepList steps(2);
        Step step;
        step.name = "A";
        steps.set(0, step);
        step.name = "B";
        steps.set(1, step);
        model.addArrayProperty("T", NodeScalar, Array1d<float>({1.0F, 2.0F}), 3U, steps, attributes);
        model.close();
    }

    static Attributes groupAttributes() {
        Attributes attributes;
        attributes.set("b", "x");
        attributes.set("a", 1);
        attributes.set("c", -2);
        attributes.set("d", 1.5F);
        return attributes;
    }

    ByteVector stream(const std::string& name) const { return SavedModel(path).stream(name); }

    TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
};

// Values of all kinds in fewer than nineteen datasets.
void saveVariedModel(const std::string& path) {
    Model model;
    model.saveTo(path, SaverOptions());
    Attributes attributes;
    attributes.set("unit", "mm");
    attributes.set("factor", 1.5F);
    model.addNode(RootMarkedGroup, "root", attributes);
    for (unsigned int part = 0; part < 3; ++part) {
        model.setCurrentNodeId(1);
        const unsigned int id = model.addNode(Shape, "part" + std::to_string(part));
        const std::size_t nodes = 100 * (part + 1);
        Array2d<float> coordinates(nodes, 3);
        for (std::size_t i = 0; i < nodes; ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                coordinates(i, j) = static_cast<float>(i) * 0.25F + static_cast<float>(j + part);
            }
        }
        model.addArrayProperty(Coordinates, coordinates, id, Step());
        model.addArrayProperty(NodeIds, Array1d<unsigned int>(nodes, part), id, Step());
        model.addArrayProperty("T", NodeScalar, Array1d<float>(nodes, 0.5F), id, StepList(1), attributes);
    }
    model.addAssemblyComponents(std::vector<std::string>{"/root/more/inner", "/root/empty/"});
}

} // namespace

TEST_F(SavedContent, TreeRecordsOfSixLinksThreeTextsAndAPosition) {
    const ByteVector root = Bytes().u32s({1, 0, 0, 0, 2, 2}).text("r").text("Group").text("0.4").u64(0);
    const ByteVector shape = Bytes().u32s({2, 1, 0, 0, 3, 3}).text("s").text("Shape").text("0.2").u64(41);
    const ByteVector geometry =
        Bytes().u32s({3, 2, 0, 0, 0, 0}).text("s").text("Geometry").text("0.7").u64(41);
    EXPECT_EQ(stream("Mox Tree"), (Bytes().u32(3).append(root).append(shape).append(geometry)));
}

TEST_F(SavedContent, LightDataOfAGroupTakes41BytesAFullEntry30AndALink14AfterItsKey) {
    const ByteVector group = Bytes()
                                 .u32s({0, 0, 0})      // translation
                                 .u32s({0, 0, One, 0}) // rotation
                                 .u32s({One, One, One})
                                 .u8(1); // marked
    const ByteVector entry = Bytes()
                                 .u32(0x0100000C) // scalar of floats
                                 .u8(0)           // no link
                                 .u32(8)          // bytes
                                 .u8(1)           // width
                                 .zeros(11)
                                 .u64(0) // position
                                 .u8(1); // vibration
    const ByteVector link = Bytes()
                                .u32(0x0100000C)
                                .u8(1)
                                .u32s({3, 0}) // node and entry
                                .u8(1);
    EXPECT_EQ(group.size(), 41U);
    EXPECT_EQ(entry.size(), 30U);
    EXPECT_EQ(link.size(), 14U);
    EXPECT_EQ(stream("Light Data"),
              (Bytes().append(group).u32(2).text(KeyA).append(entry).text(KeyB).append(link)));
}

TEST_F(SavedContent, AttributeRecordsOfTheGroupTheEntryAndTheLink) {
    const ByteVector group = Bytes()
                                 .texts({"a", "b", "c", "d"})
                                 .u32(4)
                                 .append({0, 2, 0, 1}) // kinds
                                 .u32(2)
                                 .u32s({1, 0xFFFFFFFE})
                                 .u32(1)
                                 .u32(0x3FC00000) // 1.5
                                 .u32(0)
                                 .texts({"x"});
    const ByteVector entry = Bytes().texts({"Category"}).u32(1).u8(2).zeros(12).texts({"Vibration"});
    const ByteVector link(24, 0);
    EXPECT_EQ(stream("Attributes"), (Bytes().append(group).append(entry).append(link)));
}

TEST_F(SavedContent, MaterialRecordOf84Bytes) {
    const ByteVector expected = Bytes()
                                    .u32(84)
                                    .text("0.3")
                                    .u32s({0x3F4CCCCD, 0x3F4CCCCD, 0x3F4CCCCD, One})
                                    .u32s({0, 0, 0, One})
                                    .u32s({0, 0, 0, 0})
                                    .u32s({0x3E23D70B, 0x3E23D70B, 0x3E23D70B, 0x3E4CCCCD})
                                    .u32s({0, 0x3E4CCCCD}) // transparency and shininess
                                    .u8(1);
    EXPECT_EQ(expected.size(), 84U);
    EXPECT_EQ(stream("Resources"), expected);
}

TEST_F(SavedContent, HeavyDataOfTwoFloatsStandsInFourPlanes) {
    // 1.0 is 0x3F800000 and 2.0 is 0x40000000.
    EXPECT_EQ(stream("Heavy Data"), (ByteVector{0, 0, 0, 0, 0x80, 0, 0x3F, 0x40}));
}

TEST_F(SavedContent, GlobalInformationIsOneModifierInfoAndNoResultAttributes) {
    const SavedModel saved(path);
    const std::string date = saved.model().globalInformation().modifiers.at(0).date;
    const auto dateSize = static_cast<std::uint32_t>(date.size());
    // 4 for the size, 7 for the version, 7 lengths of 4 and 12 characters besides the date.
    const ByteVector expected = Bytes()
                                    .u32(1)
                                    .u32(51 + dateSize)
                                    .text("0.1")
                                    .text("Solver")
                                    .text("7.2")
                                    .text("1.3")
                                    .text(date)
                                    .zeros(3 * 4)
                                    .u32(0);
    EXPECT_EQ(saved.stream("Global Information"), expected);
}

TEST_F(SavedContent, DateNamesDayTimeYearAndZone) {
    const SavedModel saved(path);
    const std::regex form(
        "[A-Z][a-z][a-z] [A-Z][a-z][a-z] [0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9] [0-9]+ .+");
    const std::string date = saved.model().globalInformation().modifiers.at(0).date;
    EXPECT_TRUE(std::regex_match(date, form)) << date;
}

TEST_F(SavedContent, EveryBlockIsCompressedAndTheOtherRecordsOfTheHeadIndexAreEmpty) {
    const SavedModel saved(path);
    const std::vector<MoxReader::BlockRecord>& blocks = saved.file().blocks();
    ASSERT_EQ(blocks.size(), 20U);
    const std::vector<std::string> names = {"Heavy Data", "Mox Tree",  "Light Data",
                                            "Attributes", "Resources", "Global Information"};
    for (std::size_t id = 0; id < blocks.size(); ++id) {
        const bool isUsed = id < names.size();
        EXPECT_EQ(blocks[id].name, isUsed ? names[id]
                                          : "\x0b"
                                            "Empty Block ")
            << id;
        EXPECT_EQ(blocks[id].flags, isUsed ? 0x01 : 0x00) << id;
        EXPECT_EQ(blocks[id].length != 0, isUsed) << id;
    }
}

// --- The size of blocks

class SavedWithBlockSize : public testing::TestWithParam<const char*> {};

TEST_P(SavedWithBlockSize, GivesTheSameStreamsAsWithoutTheVariable) {
    const TemporaryFolder folder;
    const std::string usual = folder.path("usual.mox");
    const std::string other = folder.path("other.mox");
    {
        const EnvironmentGuard variable(BlockSizeVariable);
        saveVariedModel(usual);
    }
    {
        const EnvironmentGuard variable(BlockSizeVariable, GetParam());
        saveVariedModel(other);
    }
    const SavedModel expected(usual);
    const SavedModel saved(other);
    for (const char* const name : {"Heavy Data", "Mox Tree", "Light Data", "Attributes", "Resources"}) {
        EXPECT_GT(expected.stream(name).size(), 0U) << name;
        EXPECT_EQ(saved.stream(name), expected.stream(name)) << name;
    }
    EXPECT_EQ(saved.model().globalInformation().modifiers.size(), 1U);
    EXPECT_EQ(saved.nodeCount(), 11U);
}

INSTANTIATE_TEST_SUITE_P(OfBytes, SavedWithBlockSize,
                         testing::Values("0", "1", "4096", "1048576", "4294967295", "12abc"),
                         [](const auto& size) { return std::string(size.param); });

TEST(SavedWithBlockSizeOne, EachValueHasABlockOfItsOwnInAChainOfIndexTables) {
    const TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    const EnvironmentGuard variable(BlockSizeVariable, "1");
    saveVariedModel(path);
    const SavedModel saved(path);
    EXPECT_GT(saved.file().index().tables.size(), 1U);
    // The node count and ten values for each of eleven nodes.
    EXPECT_EQ(saved.file().stream("Mox Tree").blocks().size(), 1U + 11U * 10U);
}

TEST(SavedDatasets, BlockThatTookPartInStreamingIsMarkedFreezable) {
    const TemporaryFolder folder;
    const std::string path = folder.path("model.mox");
    {
        Model model;
        model.saveTo(path, SaverOptions());
        model.addNode(Group, "root");
        const unsigned int id = model.addNode(Shape, "part");
        model.addArrayProperty(NodeIds, Array1d<unsigned int>({1, 2}), id, Step());
        model.addArrayProperty(ElementIds, Array1d<unsigned int>({3}), id, Step());
    }
    EXPECT_EQ(SavedModel(path).file().blocks().at(0).flags, 0x21);
}

} // namespace Api
