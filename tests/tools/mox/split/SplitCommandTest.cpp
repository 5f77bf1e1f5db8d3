// Files split into parts, and joined again.

#include "../parts/PartFiles.h"
#include "Support/NumberedArrays.h"
#include "Support/SampleModel.h"

#include <algorithm>

namespace {

using namespace Qel::Mox2;
using Floats = std::vector<float>;

class SplitCommand : public PartFiles {
protected:
    MoxRun split(Arguments arguments) const {
        arguments.insert(arguments.begin(), "split");
        return runMox(arguments);
    }
    /// Splits the file and joins the parts.
    /// @return the names of the parts.
    Arguments splitAndJoin(const Arguments& options, const std::string& file) const {
        std::filesystem::remove_all(parts);
        auto arguments = options;
        arguments.insert(arguments.end(), {file, parts});
        const auto run = split(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.messages;
        const auto names = namesOfParts();
        Arguments inputs = {"-f", out};
        for (const auto& name : names) {
            inputs.push_back(parts + "/" + name);
        }
        expectJoined(inputs);
        return names;
    }
    Arguments namesOfParts() const {
        Arguments names;
        for (const auto& entry : std::filesystem::directory_iterator(parts)) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    std::string part(const std::string& name) const { return parts + "/" + name; }

    const std::string a = path("a.mox");
    const std::string parts = path("parts");
};

// Two groups with two shapes each; coordinates are shared by all shapes, and each has numbers of its own.
void fillAssembly(Model& model) {
    std::vector<unsigned> shapes;
    for (const std::string side : {"left", "right"}) {
        model.setCurrentNodeId(1);
        Attributes attributes;
        attributes.set("Side", side);
        const auto group = model.addNode(Group, side, attributes);
        for (const std::string place : {"front", "rear"}) {
            model.setCurrentNodeId(group);
            shapes.push_back(model.addNode(Shape, place));
        }
    }
    Array1d<unsigned> all(shapes.size());
    all.copy_from(shapes.data());
    model.addArrayProperty(Coordinates, Array2d<float>(2, 3, {1, 2, 3, 4, 5, 6}), all, Step{});
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        const auto value = static_cast<float>(10 * i);
        for (const std::string step : {"Step 1", "Step 2"}) {
            Attributes time;
            time.set("Time", value);
            model.addArrayProperty("T", NodeScalar, Array1d<float>{value, value + 1}, shapes[i],
                                   Step{step, time});
        }
    }
}

} // namespace

TEST_F(SplitCommand, EachChildOfTheRootGetsAFileAndTheJoinOfAllIsEqual) {
    save("a.mox", fillAssembly);
    EXPECT_EQ(splitAndJoin({}, a), (Arguments{"1-left.mox", "2-right.mox"}));
    expectWhole(out);
    expectSame(a, out);
    expectWhole(part("2-right.mox"));
    ReadFile right(part("2-right.mox"));
    EXPECT_EQ(right.childNames({}), (Arguments{"right"}));
    EXPECT_EQ(right.childNames({"right"}), (Arguments{"front", "rear"}));
    EXPECT_EQ(right.floats({"right", "rear"}, "T\x1eStep 2"), (Floats{30, 31}));
}

TEST_F(SplitCommand, EachShapeGetsAFileWithTheGroupsThatItIsIn) {
    save("a.mox", fillAssembly);
    EXPECT_EQ(splitAndJoin({"--shapes"}, a),
              (Arguments{"1-front.mox", "2-rear.mox", "3-front.mox", "4-rear.mox"}));
    expectWhole(out);
    expectSame(a, out);
    ReadFile third(part("3-front.mox"));
    EXPECT_EQ(third.childNames({}), (Arguments{"right"}));
    EXPECT_EQ(third.childNames({"right"}), (Arguments{"front"}));
    EXPECT_EQ(third.at({"right"}).group()->attributes,
              (MoxReader::Attributes{{"Side", std::string("right")}}));
}

TEST_F(SplitCommand, LinkToAnotherPartGetsTheNumbersAndFurtherLinksLeadToIt) {
    save("a.mox", fillAssembly);
    splitAndJoin({}, a);
    ReadFile right(part("2-right.mox"));
    const auto& first = right.dataset({"right", "front"}, "Coordinates");
    EXPECT_FALSE(first.isLink);
    EXPECT_EQ(right.heavy.readFloats(first), (Floats{1, 2, 3, 4, 5, 6}));
    const auto& second = right.dataset({"right", "rear"}, "Coordinates");
    EXPECT_TRUE(second.isLink);
    EXPECT_EQ(second.linkNodeId, first.nodeId);
}

TEST_F(SplitCommand, BlocksOfOnePartAreCopiedAsTheyAreStored) {
    const Support::EnvironmentGuard small(Support::BlockSizeVariable, "8");
    save("a.mox", [](Model& model) {
        for (const std::string name : {"one", "two"}) {
            model.setCurrentNodeId(1);
            const auto shape = model.addNode(Shape, name);
            for (const std::string array : {"T", "U"}) {
                model.addArrayProperty(array, NodeScalar, Array1d<float>{1, 2}, shape, Step{});
            }
        }
    });
    ASSERT_EQ(ReadFile(a).heavyBlocks().size(), 4u);
    const auto run = split({a, parts});
    EXPECT_EQ(run.messages, "mox split: " + parts + ": 2 files, 4 blocks copied, 0 divided\n");
    EXPECT_EQ(storedNumbers(a), [&] {
        std::string all;
        for (const auto* name : {"1-one.mox", "2-two.mox"}) {
            std::filesystem::copy_file(part(name), path(name));
            all += storedNumbers(path(name));
        }
        return all;
    }());
}

TEST_F(SplitCommand, SiblingsOfOneNameStayTogetherWithAllBetweenThem) {
    save("a.mox", [](Model& model) {
        for (const std::string name : {"a", "twin", "b", "twin", "c"}) {
            model.setCurrentNodeId(1);
            model.addNode(Group, name);
            const auto shape = model.addNode(Shape, "shape");
            model.addArrayProperty("T", NodeScalar, Array1d<float>{static_cast<float>(shape)}, shape, Step{});
        }
    });
    EXPECT_EQ(splitAndJoin({}, a), (Arguments{"1-a.mox", "2-twin.mox", "3-c.mox"}));
    expectSame(a, out);
    EXPECT_EQ(ReadFile(out).childNames({}), (Arguments{"a", "twin", "b", "twin", "c"}));
    splitAndJoin({"--shapes"}, a);
    expectSame(a, out);
}

TEST_F(SplitCommand, GroupsWithoutShapesGoWithWhatIsBeforeThem) {
    save("a.mox", [](Model& model) {
        for (const std::string name : {"empty 1", "full 1", "empty 2", "full 2", "empty 3"}) {
            model.setCurrentNodeId(1);
            model.addNode(Group, name);
            if (name.starts_with("full")) {
                model.addNode(Shape, "shape");
            }
        }
    });
    EXPECT_EQ(splitAndJoin({"--shapes"}, a), (Arguments{"1-shape.mox", "2-shape.mox"}));
    expectSame(a, out);
    EXPECT_EQ(ReadFile(part("1-shape.mox")).childNames({}), (Arguments{"empty 1", "full 1", "empty 2"}));
    EXPECT_EQ(ReadFile(part("2-shape.mox")).childNames({}), (Arguments{"full 2", "empty 3"}));
}

TEST_F(SplitCommand, NodeSetsGetIntoTheirPart) {
    const auto bytes = SampleModel().file().bytes();
    folder.write("a.mox", {bytes.begin(), bytes.end()});
    EXPECT_EQ(splitAndJoin({}, a), (Arguments{"1-Part.mox", "2-Sets.mox", "3-Plain.mox"}));
    expectSame(a, out);
    ReadFile sets(part("2-Sets.mox"));
    EXPECT_EQ(sets.heavy.readNodeSets(*sets.at({"Sets"}).nodeSets()).at(0).name, "ab");
}

TEST_F(SplitCommand, ModelWithoutPartsGivesOneFile) {
    save("a.mox", [](Model&) {});
    EXPECT_EQ(splitAndJoin({}, a), (Arguments{"1-model.mox"}));
    expectSame(a, out);
}

TEST_F(SplitCommand, NamesOfAnyBytesMakeSafeNamesOfFiles) {
    save("a.mox", [](Model& model) {
        model.addNode(Group, "../up\n");
        model.setCurrentNodeId(1);
        model.addNode(Group, "");
    });
    EXPECT_EQ(splitAndJoin({}, a), (Arguments{"1-.._up_.mox", "2-.mox"}));
    expectSame(a, out);
}

TEST_F(SplitCommand, SplitOfManyTinyBlocksIsWholeAtAllIndexTables) {
    Support::saveNumberedArrays(path("one.mox"), "40", 250, [](unsigned i) { return i % 2 == 0 ? 9U : 10U; });
    Support::saveNumberedArrays(path("two.mox"), "40", 250, [](unsigned i) { return i % 2 == 0 ? 9U : 10U; });
    expectJoined({"--suffix", "{n}", a, path("one.mox"), path("two.mox")});
    splitAndJoin({}, a);
    expectWhole(out);
    expectSame(a, out);
    expectSame(part("1-part1.mox"), part("1-part1.mox"));
    EXPECT_EQ(ReadFile(part("2-part2.mox")).heavyBlocks().size(), 125u);
    expectWhole(part("2-part2.mox"));
}

TEST_F(SplitCommand, FolderThatExistsIsRefused) {
    save("a.mox", fillAssembly);
    std::filesystem::create_directory(parts);
    const auto run = split({a, parts});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox split: " + parts + ": exists already; give the name of a new folder\n");
}

TEST_F(SplitCommand, FileThatIsNotWholeIsRefusedAndNoFolderIsMade) {
    save("a.mox", fillAssembly);
    folder.write("a.mox", folder.read("a.mox").substr(0, 3000));
    const auto run = split({a, parts});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.says(a + ": is not whole: error")) << run.messages;
    EXPECT_EQ(folder.files(), (Arguments{"a.mox"}));
}

TEST_F(SplitCommand, DamagedBlockThatHasToBeDividedIsRefused) {
    save("a.mox", fillAssembly);
    auto bytes = folder.read("a.mox");
    const auto block = ReadFile(a).heavyBlocks().at(0);
    bytes[block.position + block.length / 2] ^= 0x10;
    folder.write("a.mox", bytes);
    const auto run = split({a, parts});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(folder.files(), (Arguments{"a.mox"}));
}
