// What mox join makes of whole files.

#include "../parts/PartFiles.h"
#include "Support/NumberedArrays.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace Qel::Mox2;
using Floats = std::vector<float>;
using Support::numbersOfArray;
using Support::saveNumberedArrays;

class JoinCommand : public PartFiles {
protected:
    const std::string a = path("a.mox");
    const std::string b = path("b.mox");
    const std::string c = path("c.mox");
};

// The date has the same length in both, so all else has its place.
std::string withoutGlobalInformation(const std::string& file, const std::string& bytes) {
    auto rest = bytes;
    const MoxReader::File opened(file);
    for (const auto& block : opened.blocks()) {
        if (block.name == "Global Information") {
            rest.erase(block.position, block.length);
            rest.erase(block.recordPosition + 133, 4);
        }
    }
    return rest;
}

} // namespace

TEST_F(JoinCommand, OneFileComesOutAsItWentInButForTheDate) {
    save("a.mox", [](Model& model) {
        const auto group = model.addNode(Group, "group");
        const auto shape = model.addNode(Shape, "shape");
        NodeProperties red;
        red.set(DiffuseColor, Floats{1, 0, 0});
        red.set(AmbientIntensity, 0.5F);
        model.setNodeData(shape, red);
        model.addArrayProperty("T", NodeScalar, Array1d<float>{1, 2, 3}, shape, Step{"Step 1", {}});
        model.setCurrentNodeId(group);
        const auto other = model.addNode(Shape, "other");
        StepList steps(2);
        steps.set(0, {"Step 1", {}});
        steps.set(1, {"Step 2", {}});
        model.addArrayProperty("U", NodeScalar, Array1d<float>{4}, Array1d<unsigned>{shape, other}, steps);
    });
    expectJoined({out, a});
    EXPECT_EQ(withoutGlobalInformation(out, folder.read("out.mox")),
              withoutGlobalInformation(a, folder.read("a.mox")));
    expectSame(a, out);
}

TEST_F(JoinCommand, GroupsOfOnePathBecomeOneInTheOrderOfTheFiles) {
    const auto fill = [](const std::string& shape) {
        return [shape](Model& model) {
            model.addNode(Group, "left");
            model.addNode(Shape, shape);
        };
    };
    save("a.mox", fill("second"));
    save("b.mox", fill("first"));
    expectJoined({out, a, b});
    expectWhole(out);
    const ReadFile joined(out);
    EXPECT_EQ(joined.childNames({}), (Arguments{"left"}));
    EXPECT_EQ(joined.childNames({"left"}), (Arguments{"second", "first"}));
    EXPECT_EQ(joined.model.nodes().size(), 6u);
}

TEST_F(JoinCommand, NumbersOfAllFilesAreReadBack) {
    saveShape("a.mox", "one", {"T", "U"}, 0);
    saveShape("b.mox", "two", {"T"}, 100);
    saveShape("c.mox", "three", {"T", "V"}, 200);
    expectJoined({out, a, b, c});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.floats({"one"}, "U"), (Floats{10, 11}));
    EXPECT_EQ(joined.floats({"two"}, "T"), (Floats{100, 101}));
    EXPECT_EQ(joined.floats({"three"}, "T"), (Floats{200, 201}));
    EXPECT_EQ(joined.floats({"three"}, "V"), (Floats{210, 211}));
    EXPECT_EQ(storedNumbers(out), storedNumbers(a) + storedNumbers(b) + storedNumbers(c));
}

TEST_F(JoinCommand, DatasetsOfOneShapeMayComeFromSeveralFiles) {
    saveShape("a.mox", "part", {"T"}, 0);
    saveShape("b.mox", "part", {"U"}, 100);
    saveShape("c.mox", "part", {"V"}, 200);
    expectJoined({out, a, b, c});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.keys({"part"}), (Arguments{"T", "U", "V"}));
    EXPECT_EQ(joined.floats({"part"}, "V"), (Floats{200, 201}));
}

TEST_F(JoinCommand, LinksLeadWhereTheyLedInTheirFile) {
    const auto saveLinked = [this](const std::string& name, const std::string& prefix, float first) {
        save(name, [&](Model& model) {
            const auto root = 1U;
            const auto one = model.addNode(Shape, prefix + "1");
            model.addArrayProperty("own", NodeScalar, Array1d<float>{first}, one, Step{});
            model.setCurrentNodeId(root);
            const auto two = model.addNode(Shape, prefix + "2");
            model.addArrayProperty("T", NodeScalar, Array1d<float>{first + 1}, Array1d<unsigned>{one, two},
                                   Step{});
        });
    };
    saveLinked("a.mox", "a", 0);
    saveLinked("b.mox", "b", 100);
    expectJoined({out, a, b});
    expectWhole(out);
    ReadFile joined(out);
    const auto& link = joined.dataset({"b2"}, "T");
    EXPECT_TRUE(link.isLink);
    EXPECT_EQ(link.linkNodeId, joined.at({"b1"}).id);
    EXPECT_EQ(link.linkIndex, 1u);
    EXPECT_EQ(joined.floats({"b2"}, "T"), (Floats{101}));
    EXPECT_EQ(joined.floats({"a2"}, "T"), (Floats{1}));
}

TEST_F(JoinCommand, LinksToADatasetOfASharedShapeCountTheDatasetsOfEarlierFiles) {
    saveShape("a.mox", "part", {"T", "U"}, 0);
    save("b.mox", [](Model& model) {
        const auto part = model.addNode(Shape, "part");
        model.setCurrentNodeId(1);
        const auto other = model.addNode(Shape, "other");
        model.addArrayProperty("V", NodeScalar, Array1d<float>{7}, Array1d<unsigned>{part, other}, Step{});
    });
    expectJoined({out, a, b});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.dataset({"other"}, "V").linkIndex, 2u);
    EXPECT_EQ(joined.floats({"other"}, "V"), (Floats{7}));
}

TEST_F(JoinCommand, AttributesStepsAndMarksAreKept) {
    save("a.mox", [](Model& model) {
        Attributes attributes;
        attributes.set("Count", 7);
        attributes.set("Mass", 0.5F);
        attributes.set("Title", "rib");
        model.addNode(Group, "group", attributes);
        const auto shape = model.addNode(Shape, "shape");
        Step mode{"Mode 1", {}};
        mode.attributes.set("Category", "Vibration");
        mode.attributes.set("Frequency", 12.5F);
        model.addArrayProperty("D", NodeVector, Array2d<float>(1, 3, {1, 2, 3}), shape, mode);
    });
    saveShape("b.mox", "two", {"T"}, 100);
    expectJoined({out, b, a});
    ReadFile joined(out);
    EXPECT_EQ(joined.at({"group"}).group()->attributes,
              (MoxReader::Attributes{{"Count", 7U}, {"Mass", 0.5F}, {"Title", std::string("rib")}}));
    const auto& dataset = joined.dataset({"group", "shape"}, "D\x1eMode 1");
    EXPECT_TRUE(dataset.vibration);
    EXPECT_EQ(dataset.attributes,
              (MoxReader::Attributes{{"Category", std::string("Vibration")}, {"Frequency", 12.5F}}));
    EXPECT_EQ(dataset.width, 3);
}

TEST_F(JoinCommand, UnderPutsEachFileIntoAGroupOfItsOwn) {
    saveShape("a.mox", "part", {"T"}, 0);
    saveShape("b.mox", "part", {"T"}, 100);
    expectJoined({"--under", "Rank {rank} is {n} in {file}", out, a, b});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.childNames({}), (Arguments{"Rank 0 is 1 in a", "Rank 1 is 2 in b"}));
    EXPECT_EQ(joined.floats({"Rank 1 is 2 in b", "part"}, "T"), (Floats{100, 101}));
}

TEST_F(JoinCommand, SuffixNamesTheShapesAnew) {
    saveShape("a.mox", "part", {"T"}, 0);
    saveShape("b.mox", "part", {"T"}, 100);
    expectJoined({"--suffix", " {n}", out, a, b});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.childNames({}), (Arguments{"part 1", "part 2"}));
    EXPECT_EQ(joined.at({"part 2"}).name, "part 2");
    EXPECT_EQ(joined.floats({"part 2"}, "T"), (Floats{100, 101}));
}

TEST_F(JoinCommand, SourceIsThatOfTheInputsIfTheyAgree) {
    const auto nothing = [](Model&) {};
    save("a.mox", nothing);
    save("b.mox", nothing);
    save("c.mox", nothing, {true, "solver", "8", ""});
    expectJoined({out, a, b});
    const auto same = ReadFile(out).model.globalInformation().modifiers;
    ASSERT_EQ(same.size(), 1u);
    EXPECT_EQ(same[0].sourceName, "solver");
    EXPECT_EQ(same[0].sourceVersion, "7");
    expectJoined({"-f", out, a, c});
    EXPECT_EQ(ReadFile(out).model.globalInformation().modifiers.at(0).sourceName, "mox join");
}

TEST_F(JoinCommand, ModelsWithoutNodesJoinToOneWithoutNodes) {
    for (const auto& file : {a, b}) {
        Model model;
        model.saveTo(file, {true, "", "", ""});
        model.close();
    }
    expectJoined({"--under", "Rank {n}", out, a, b});
    expectWhole(out);
    EXPECT_EQ(ReadFile(out).model.nodes().size(), 1u);
}

TEST_F(JoinCommand, SiblingsOfOneNameMeetInTheirOrder) {
    const auto twins = [](const std::string& shape) {
        return [shape](Model& model) {
            for (int i = 1; i <= 2; ++i) {
                model.setCurrentNodeId(1);
                model.addNode(Group, "twin");
                model.addNode(Shape, shape + std::to_string(i));
            }
        };
    };
    save("a.mox", twins("a"));
    save("b.mox", twins("b"));
    expectJoined({out, a, b});
    const ReadFile joined(out);
    const auto groups = joined.model.children(1);
    ASSERT_EQ(groups.size(), 2u);
    const auto second = joined.model.children(groups[1]);
    ASSERT_EQ(second.size(), 2u);
    EXPECT_EQ(joined.model.node(second[0]).name, "a2");
    EXPECT_EQ(joined.model.node(second[1]).name, "b2");
}

// --- Blocks

// Each array of 40 bytes fills a block, and the next one goes into it too: two arrays for each block.
TEST_F(JoinCommand, SeveralHundredBlocksLieWhereTheIndexTablesWantThem) {
    const auto length = [](unsigned i) { return i % 2 == 0 ? 9U : 10U; };
    for (unsigned file = 0; file < 3; ++file) {
        const auto name = std::string(1, static_cast<char>('a' + file)) + ".mox";
        saveNumberedArrays(path(name), "40", 150, length);
    }
    expectJoined({"--suffix", " {rank}", out, a, b, c});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.heavyBlocks().size(), 225u);
    EXPECT_TRUE(joined.file.blocks()[19].isIndexBlock());
    EXPECT_TRUE(joined.file.blocks()[219].isIndexBlock());
    EXPECT_FALSE(joined.file.index().isDisplaced());
    EXPECT_EQ(storedNumbers(out), storedNumbers(a) + storedNumbers(b) + storedNumbers(c));
    for (const auto* part : {"part 0", "part 1", "part 2"}) {
        const auto& datasets = joined.at({part}).geometry()->datasets;
        ASSERT_EQ(datasets.size(), 150u);
        for (unsigned i = 0; i < datasets.size(); ++i) {
            ASSERT_EQ(joined.heavy.readUnsigned(datasets[i]), numbersOfArray(i, length(i))) << part << i;
        }
    }
}

// Arrays that fill a block each are what makes files whose blocks lie too low; 18 of them don't yet.
TEST_F(JoinCommand, ManyFilesWhoseArraysFillABlockEachGiveAWholeFile) {
    Arguments arguments = {"--suffix", "{n}", out};
    for (unsigned file = 0; file < 30; ++file) {
        const auto name = path("in" + std::to_string(file) + ".mox");
        saveNumberedArrays(name, "4", 10, [](unsigned) { return 100U; });
        arguments.push_back(name);
    }
    expectJoined(arguments);
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.heavyBlocks().size(), 300u);
    EXPECT_FALSE(joined.file.index().isDisplaced());
    EXPECT_EQ(joined.heavy.readUnsigned(joined.dataset({"part30"}, "T9")), numbersOfArray(9, 100));
}

TEST_F(JoinCommand, TinyAndHugeBlocksGoTogether) {
    saveNumberedArrays(a, "0", 18, [](unsigned) { return 1U; });
    saveNumberedArrays(b, "4000000000", 3, [](unsigned) { return 500'000U; });
    saveNumberedArrays(c, "0", 18, [](unsigned) { return 1U; });
    expectJoined({"--suffix", "{n}", out, a, b, c});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.heavyBlocks().size(), 37u);
    EXPECT_EQ(joined.heavy.readUnsigned(joined.dataset({"part2"}, "T2")), numbersOfArray(2, 500'000));
    EXPECT_EQ(joined.heavy.readUnsigned(joined.dataset({"part3"}, "T17")), numbersOfArray(17, 1));
}

TEST_F(JoinCommand, FilesWithoutNumbersStandBetweenOthers) {
    saveShape("a.mox", "one", {"T"}, 0);
    saveShape("b.mox", "none", {}, 0);
    expectJoined({out, b, a});
    expectWhole(out);
    expectJoined({"-f", out, a, b});
    expectWhole(out);
    ReadFile joined(out);
    EXPECT_EQ(joined.floats({"one"}, "T"), (Floats{0, 1}));
    EXPECT_EQ(joined.at({"none"}).geometry()->datasets.size(), 0u);
}

TEST_F(JoinCommand, EnvironmentDoesNotMatter) {
    saveShape("a.mox", "one", {"T"}, 0);
    saveShape("b.mox", "two", {"T"}, 100);
    expectJoined({out, a, b});
    {
        const Support::EnvironmentGuard tiny(Support::BlockSizeVariable, "1");
        expectJoined({c, a, b});
        EXPECT_STREQ(std::getenv(Support::BlockSizeVariable), "1");
    }
    EXPECT_EQ(withoutGlobalInformation(out, folder.read("out.mox")),
              withoutGlobalInformation(c, folder.read("c.mox")));
}

TEST_F(JoinCommand, SameInputsGiveTheSameBytesButForTheDate) {
    saveShape("a.mox", "one", {"T", "U"}, 0);
    saveShape("b.mox", "two", {"T"}, 100);
    expectJoined({out, a, b});
    expectJoined({c, a, b});
    EXPECT_EQ(withoutGlobalInformation(out, folder.read("out.mox")),
              withoutGlobalInformation(c, folder.read("c.mox")));
}

TEST_F(JoinCommand, JoinOfJoinsIsTheJoinOfAll) {
    saveShape("a.mox", "one", {"T"}, 0);
    saveShape("b.mox", "two", {"T"}, 100);
    saveShape("c.mox", "three", {"T"}, 200);
    expectJoined({path("ab.mox"), a, b});
    expectJoined({out, path("ab.mox"), c});
    expectJoined({path("all.mox"), a, b, c});
    EXPECT_EQ(withoutGlobalInformation(out, folder.read("out.mox")),
              withoutGlobalInformation(path("all.mox"), folder.read("all.mox")));
}

// --- The command

TEST_F(JoinCommand, SummaryCountsWhatWasJoined) {
    saveShape("a.mox", "one", {"T", "U"}, 0);
    saveShape("b.mox", "two", {"T"}, 100);
    EXPECT_EQ(join({out, a, b}).messages,
              "mox join: " + out + ": 5 nodes of 2 files, with 3 datasets and 24 B of numbers\n");
    EXPECT_EQ(join({"-q", "-f", out, a, b}).messages, "");
}

TEST_F(JoinCommand, ExistingOutputIsKeptUnlessToBeOverwritten) {
    saveShape("a.mox", "one", {"T"}, 0);
    folder.write("out.mox", "precious");
    const auto refused = join({out, a});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.messages, "mox join: " + out + ": exists already; --overwrite replaces it\n");
    EXPECT_EQ(folder.read("out.mox"), "precious");
    expectJoined({"-f", out, a});
    expectWhole(out);
}

TEST_F(JoinCommand, OutputMayNotBeOneOfTheInputs) {
    saveShape("a.mox", "one", {"T"}, 0);
    saveShape("b.mox", "two", {"T"}, 0);
    const auto run = join({"-f", b, a, b});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox join: " + b + ": is one of the inputs itself\n");
    expectWhole(b);
}

TEST_F(JoinCommand, InputsAreNeeded) {
    EXPECT_EQ(join({out}).exitCode, 2);
    EXPECT_EQ(join({}).exitCode, 2);
}
