#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "Support/SampleModel.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <functional>

namespace {

namespace Mox = Qel::Mox2;
using Floats = std::vector<float>;

class DiffCommand : public testing::Test {
protected:
    /// Saves a model with the Group 1 "root" and what fill adds below it.
    std::string save(const std::string& name, const std::function<void(Mox::Model&)>& fill) const {
        Mox::Model model;
        model.saveTo(folder.path(name), {});
        model.addNode(Mox::Group, "root");
        fill(model);
        model.close();
        return folder.path(name);
    }

    /// Saves a model with one shape "part" and one dataset of it.
    std::string saveDataset(const std::string& name, const Floats& values, std::size_t columns = 3,
                            const Mox::Step& step = {"Load 1", {}}) const {
        return save(name, [&](Mox::Model& model) {
            const auto part = model.addNode(Mox::Shape, "part");
            const Mox::Array2d<float> array(values.size() / columns, columns, values);
            model.addArrayProperty("U", columns == 3 ? Mox::NodeVector : Mox::NodeScalar, array, part, step);
        });
    }

    static void addGroup(Mox::Model& model, const std::string& name, const Floats& translation = {0, 0, 0},
                         const Mox::Attributes& attributes = {}) {
        model.setCurrentNodeId(1);
        const auto group = model.addNode(Mox::Group, name, attributes);
        Mox::NodeProperties properties;
        properties.set(Mox::Translation, translation);
        model.setNodeData(group, properties);
    }

    static void addShape(Mox::Model& model, const std::string& name) {
        model.setCurrentNodeId(1);
        model.addNode(Mox::Shape, name);
    }

    /// Compares the files a.mox and b.mox.
    MoxRun diff(std::vector<std::string> options = {}) const {
        options.insert(options.begin(), "diff");
        options.push_back(folder.path("a.mox"));
        options.push_back(folder.path("b.mox"));
        return runMox(options);
    }

    void expectDifferences(const MoxRun& run, const std::string& lines) const {
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.output, lines);
        EXPECT_EQ(run.messages, "");
    }

    void expectEqual(const MoxRun& run) const {
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output + run.messages, "");
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(DiffCommand, ModelSavedTwiceIsEqual) {
    saveSampleModel(folder.path("a.mox"));
    saveSampleModel(folder.path("b.mox"));
    expectEqual(diff());
    expectEqual(diff({"--links"}));
}

TEST_F(DiffCommand, ReportsTheWorstNumberAndItsPlace) {
    saveDataset("a.mox", {0, 0, 0, 1, 1, 1});
    saveDataset("b.mox", {0, 0, 0, 1, 1.5F, 2});
    expectDifferences(diff(), "/root/part, U, step 1 \"Load 1\": numbers: 2 of 6 differ, "
                              "worst at row 1, component 2: 1 != 2 (by 1)\n");
}

TEST_F(DiffCommand, AbsoluteToleranceAllowsDifferences) {
    saveDataset("a.mox", {0, 0, 0, 1, 1, 1});
    saveDataset("b.mox", {0, 0, 0, 1, 1.5F, 2});
    expectDifferences(diff({"--abs", "0.5"}), "/root/part, U, step 1 \"Load 1\": numbers: 1 of 6 differ, "
                                              "worst at row 1, component 2: 1 != 2 (by 1)\n");
    expectEqual(diff({"--abs", "1"}));
    expectEqual(diff({"--rel", "0.5"}));
}

TEST_F(DiffCommand, NumbersReadBackEqualFromItsLines) {
    saveDataset("a.mox", {0.1F}, 1, {});
    saveDataset("b.mox", {0.100000024F}, 1, {});
    expectDifferences(diff(), "/root/part, U: numbers: 1 of 1 differ, worst at row 0, component 0: "
                              "0.1 != 0.100000024 (by 2.23517e-08)\n");
}

TEST_F(DiffCommand, DatasetsOfOtherShapesAreNotComparedNumberByNumber) {
    saveDataset("a.mox", {0, 0, 0, 1, 1, 1});
    saveDataset("b.mox", {1, 2, 3});
    expectDifferences(diff(), "/root/part, U, step 1 \"Load 1\": shape: \"2 x 3\" != \"1 x 3\"\n");
}

TEST_F(DiffCommand, TypesOfDatasetsCount) {
    saveDataset("a.mox", {7}, 1, {});
    save("b.mox", [](Mox::Model& model) {
        const auto part = model.addNode(Mox::Shape, "part");
        model.addArrayProperty("U", Mox::NodeIds, Mox::Array1d<unsigned>{7}, part, Mox::Step{});
        model.addArrayProperty("V", Mox::ElementIds, Mox::Array1d<unsigned>{7}, part, Mox::Step{"s", {}});
    });
    expectDifferences(diff(), "/root/part, U: element type: \"float\" != \"unsigned\"\n"
                              "/root/part, V, step 1 \"s\": dataset: \"unsigned, 1 x 1\", only in " +
                                  folder.path("b.mox") + "\n");
}

TEST_F(DiffCommand, StepsArePartOfTheKey) {
    saveDataset("a.mox", {7}, 1, {"Load 1", {}});
    saveDataset("b.mox", {7}, 1, {"Load 2", {}});
    expectDifferences(diff(), "/root/part, U, step 1 \"Load 1\": dataset: \"float, 1 x 1\", only in " +
                                  folder.path("a.mox") + "\n/root/part, U, step 1 \"Load 2\": dataset: " +
                                  "\"float, 1 x 1\", only in " + folder.path("b.mox") + "\n");
}

TEST_F(DiffCommand, StepsShowAsInTheTree) {
    Mox::Step step{"Step 1", {}};
    step.attributes.set("Time", 0.25F);
    saveDataset("a.mox", {7}, 1, step);
    saveDataset("b.mox", {8}, 1, step);
    expectDifferences(diff(), "/root/part, U, step 1 @0.25: numbers: 1 of 1 differ, "
                              "worst at row 0, component 0: 7 != 8 (by 1)\n");
}

TEST_F(DiffCommand, ReportsNodesThatOneFileLacksAndTypesThatChanged) {
    save("a.mox", [](Mox::Model& model) {
        addGroup(model, "old");
        addGroup(model, "both");
    });
    save("b.mox", [](Mox::Model& model) {
        addShape(model, "both");
        addShape(model, "new");
    });
    expectDifferences(diff(), "/root/old: node: \"Group\", only in " + folder.path("a.mox") +
                                  "\n/root/new: node: \"Shape\", only in " + folder.path("b.mox") +
                                  "\n/root/both: type: \"Group\" != \"Shape\"" +
                                  "\n/root/both: node: \"Geometry\", only in " + folder.path("b.mox") + "\n");
}

TEST_F(DiffCommand, ReportsTransformsMaterialsAndAttributes) {
    const auto fill = [](float x, float red, int mass) {
        return [=](Mox::Model& model) {
            Mox::Attributes attributes;
            attributes.set("Mass", mass);
            addGroup(model, "g", {x, 0, 0}, attributes);
            const auto shape = model.addNode(Mox::Shape, "s");
            Mox::NodeProperties properties;
            properties.set(Mox::DiffuseColor, Floats{red, 0, 0});
            model.setNodeData(shape, properties);
        };
    };
    save("a.mox", fill(0, 0.1F, 3));
    save("b.mox", fill(1, 0.2F, 4));
    expectDifferences(diff(), "/root/g: translation: [0.0,0.0,0.0] != [1.0,0.0,0.0]\n"
                              "/root/g: attribute \"Mass\": 3 != 4\n"
                              "/root/g/s: material: diffuse: [0.1,0.0,0.0,1.0] != [0.2,0.0,0.0,1.0]\n");
    expectDifferences(diff({"--abs", "1"}), "/root/g: attribute \"Mass\": 3 != 4\n");
}

TEST_F(DiffCommand, SiblingsOfOneNameArePairedInOrder) {
    save("a.mox", [](Mox::Model& model) {
        addGroup(model, "g", {1, 0, 0});
        addGroup(model, "other");
        addGroup(model, "g", {2, 0, 0});
    });
    save("b.mox", [](Mox::Model& model) {
        addGroup(model, "other");
        addGroup(model, "g", {1, 0, 0});
        addGroup(model, "g", {3, 0, 0});
    });
    expectDifferences(diff(), "/root/g#4: translation: [2.0,0.0,0.0] != [3.0,0.0,0.0]\n");
}

TEST_F(DiffCommand, LinksEqualStoredNumbersUnlessAsked) {
    const auto fill = [](bool link) {
        return [link](Mox::Model& model) {
            const auto part = model.addNode(Mox::Shape, "part");
            const Mox::Array1d<float> values{1, 2};
            Mox::StepList steps(2);
            steps.set(0, {"1", {}});
            steps.set(1, {"2", {}});
            if (link) {
                return model.addArrayProperty("T", Mox::NodeScalar, values, part, steps);
            }
            model.addArrayProperty("T", Mox::NodeScalar, values, part, steps[0]);
            model.addArrayProperty("T", Mox::NodeScalar, values, part, steps[1]);
        };
    };
    save("a.mox", fill(false));
    save("b.mox", fill(true));
    expectEqual(diff());
    expectDifferences(diff({"--links"}), "/root/part, T, step 2: link: "
                                         R"({"node":"/root/part","dataset":"T","step":"1"}, only in )" +
                                             folder.path("b.mox") + "\n");
}

TEST_F(DiffCommand, SharedNumbersDifferForEachDatasetThatHasThem) {
    const auto fill = [](float value) {
        return [value](Mox::Model& model) {
            const auto part = model.addNode(Mox::Shape, "part");
            Mox::StepList steps(2);
            steps.set(0, {"1", {}});
            steps.set(1, {"2", {}});
            model.addArrayProperty("T", Mox::NodeScalar, Mox::Array1d<float>{value}, part, steps);
        };
    };
    save("a.mox", fill(1));
    save("b.mox", fill(2));
    const std::string body = "numbers: 1 of 1 differ, worst at row 0, component 0: 1 != 2 (by 1)\n";
    expectDifferences(diff(), "/root/part, T, step 1: " + body + "/root/part, T, step 2: " + body);
}

TEST_F(DiffCommand, SourceOfTheFileCounts) {
    saveSampleModel(folder.path("a.mox"));
    Mox::Model().saveTo(folder.path("b.mox"), {});
    const auto run = diff();
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.output.starts_with("file: save 1: source name: \"Solver\" != \"\"\n"
                                       "file: save 1: source version: \"2.1\" != \"\"\n"
                                       "/Assembly: name: \"Assembly\" != \"\"\n"
                                       "/Assembly: type: \"Group\" != \"\"\n"))
        << run.output;
}

TEST_F(DiffCommand, NodeSetsAreComparedMemberByMember) {
    const auto write = [this](const std::string& name, const SampleModel& model) {
        const auto bytes = model.file().bytes();
        folder.write(name, std::string(bytes.begin(), bytes.end()));
    };
    SampleModel model;
    write("a.mox", model);
    model.heavy[model.heavy.size() - 4] = 7; // The second value of the last member, 6 before.
    write("b.mox", model);
    expectDifferences(diff(), "/Root/Sets: node set \"cde\", member 1: [3,6] != [3,7]\n");
}

TEST_F(DiffCommand, JsonHasAllOfIt) {
    const auto a = saveDataset("a.mox", {1, 1, 1});
    const auto b = saveDataset("b.mox", {1, 1, std::numeric_limits<float>::infinity()});
    const auto run = diff({"--json", "--rel", "0.5"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "{\n  \"files\": {\"a\":\"" + a + "\",\"b\":\"" + b +
                              R"("},
  "tolerance": {"absolute":0.0,"relative":0.5},
  "equal": false,
  "differences": [
    {"what":"numbers","node":"/root/part","idA":3,"idB":3,"dataset":"U","step":"Load 1","numbers":{"differing":1,"count":3,"worst":{"row":0,"component":2,"a":1.0,"b":"inf","by":"inf"}}}
  ]
}
)");
}

TEST_F(DiffCommand, JsonOfEqualFilesHasNoDifferences) {
    saveDataset("a.mox", {1, 1, 1});
    saveDataset("b.mox", {1, 1, 1});
    const auto run = diff({"--json"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.output.ends_with("  \"equal\": true,\n  \"differences\": []\n}\n")) << run.output;
}

TEST_F(DiffCommand, QuietLeavesItToTheExitCode) {
    saveDataset("a.mox", {1, 1, 1});
    saveDataset("b.mox", {1, 1, 2});
    const auto run = diff({"-q"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output + run.messages, "");
}

TEST_F(DiffCommand, MissingOrDamagedFileIsTroubleAndNamed) {
    saveDataset("a.mox", {1, 1, 1});
    const auto missing = diff();
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_EQ(missing.output, "");
    EXPECT_EQ(missing.messages, "mox diff: " + folder.path("b.mox") + ": there is no such file\n");
    const auto whole = folder.read("a.mox");
    folder.write("b.mox", whole.substr(0, whole.size() - 1));
    const auto cut = diff();
    EXPECT_EQ(cut.exitCode, 2);
    EXPECT_TRUE(cut.messages.starts_with("mox diff: " + folder.path("b.mox") + ": ")) << cut.messages;
}

TEST_F(DiffCommand, NumbersThatCannotBeReadAreTroubleAndNoDifference) {
    saveDataset("a.mox", {1, 1, 1});
    auto damaged = folder.read("a.mox");
    // The first block holds the numbers: length word, zlib header, bytes.
    auto& byte = damaged[2800 + 4 + 2 + 3];
    byte = static_cast<char>(byte ^ 0x10);
    folder.write("b.mox", damaged);
    const auto run = diff();
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_TRUE(run.messages.starts_with("mox diff: " + folder.path("b.mox") + ": ")) << run.messages;
    EXPECT_EQ(std::count(run.messages.begin(), run.messages.end(), '\n'), 1);
}

TEST_F(DiffCommand, WrongUsageIsTrouble) {
    EXPECT_EQ(runMox({"diff", "a.mox"}).exitCode, 2);
    EXPECT_EQ(runMox({"diff", "-", "-"}).exitCode, 2);
    for (const auto* number : {"-1", "nan", "inf", "little"}) {
        const auto run = runMox({"diff", std::string("--abs=") + number, "a.mox", "b.mox"});
        EXPECT_EQ(run.exitCode, 2) << number;
        EXPECT_NE(run.messages.find("must be a number from 0 up"), std::string::npos) << run.messages;
    }
}

TEST_F(DiffCommand, HelpExplainsTheToleranceAndShowsExamples) {
    const auto run = runMox({"diff", "--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("|a - b| <= max(abs, rel * max(|a|, |b|))"), std::string::npos);
    EXPECT_NE(run.output.find("mox diff --rel 1e-5 --abs 1e-9 before.mox after.mox"), std::string::npos);
}

namespace {

/// One dataset of `steps` steps in all, which share the numbers of `holders` entries in turns.
void addSharedNumbers(Mox::Model& model, unsigned holders, unsigned steps, std::size_t size = 8) {
    const auto part = model.addNode(Mox::Shape, "part");
    for (unsigned holder = 0; holder < holders; ++holder) {
        const auto count = (steps - holder + holders - 1) / holders;
        Mox::StepList sharing(count);
        for (unsigned i = 0; i < count; ++i) {
            sharing.set(i, {std::to_string(holder + i * holders), {}});
        }
        Mox::Array1d<float> values(size, 0.0F);
        values[0] = static_cast<float>(holder);
        model.addArrayProperty("U", Mox::NodeScalar, values, part, sharing);
    }
}

} // namespace

TEST_F(DiffCommand, SharedNumbersMayBeSharedOtherwise) {
    save("a.mox", [](Mox::Model& model) { addSharedNumbers(model, 3, 60); });
    save("b.mox", [](Mox::Model& model) { addSharedNumbers(model, 60, 60); });
    const auto run = diff();
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(std::ranges::count(run.output, '\n'), 60 - 3) << run.output;
}

// Each of 40 datasets with each of 41 would require 1640 reads of 200 kB, although the files are small.
TEST_F(DiffCommand, LinksThatPairEverythingWithEverythingAreRefused) {
    save("a.mox", [](Mox::Model& model) { addSharedNumbers(model, 40, 40 * 41, 50'000); });
    save("b.mox", [](Mox::Model& model) { addSharedNumbers(model, 41, 40 * 41, 50'000); });
    const auto run = diff();
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.messages, "mox diff: " + folder.path("b.mox") +
                                ": its links pair its numbers with those of " + folder.path("a.mox") +
                                " in too many ways to compare them all; --no-limit goes on all the same\n");
}

TEST_F(DiffCommand, PairsWithoutLimitAreComparedIfAskedFor) {
    save("a.mox", [](Mox::Model& model) { addSharedNumbers(model, 2, 2 * 3); });
    save("b.mox", [](Mox::Model& model) { addSharedNumbers(model, 3, 2 * 3); });
    EXPECT_EQ(diff({"--no-limit"}).output, diff().output);
}

TEST_F(DiffCommand, ComparesOnlyTheChosenSteps) {
    for (const std::string name : {"a.mox", "b.mox"}) {
        save(name, [&](Mox::Model& model) {
            const auto part = model.addNode(Mox::Shape, "part");
            for (int n = 1; n <= 3; ++n) {
                const bool differs = n == 2 && name == "b.mox";
                model.addArrayProperty("U", Mox::NodeScalar, Mox::Array1d<float>{differs ? 9.0F : 1.0F}, part,
                                       Mox::Step{"Step " + std::to_string(n), {}});
            }
        });
    }
    EXPECT_EQ(diff().exitCode, 1);
    expectEqual(diff({"--step", "3"}));
    expectEqual(diff({"--step", "first"}));
    EXPECT_EQ(diff({"--step", "2:last"}).exitCode, 1);
    const auto unknown = diff({"--step", "4"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_EQ(unknown.messages,
              "mox diff: " + folder.path("a.mox") + ": has no step \"4\"; its steps are: 1, 2, 3\n");
}
