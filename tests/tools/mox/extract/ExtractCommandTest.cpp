#include "../common/MoxRun.h"
#include "../common/SampleModel.h"
#include "../common/SteppedModel.h"
#include "Support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

namespace {

namespace Mox = Qel::Mox2;

class ExtractCommand : public testing::Test {
protected:
    void SetUp() override { saveSampleModel(model); }

    MoxRun extract(std::vector<std::string> options) const {
        options.insert(options.begin(), {"extract", model});
        return runMox(options);
    }

    void expectOutput(const MoxRun& run, const std::string& output) const {
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.output, output);
        EXPECT_EQ(run.messages, "");
    }

    void expectFailure(const MoxRun& run, const std::string& reason) const {
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.messages, "mox extract: " + reason + "\n");
    }

    /// Saves a model with unusual names and numbers: Group 1 "a/b", Shape 2 with Geometry 3 "c", Shape 4 with
    /// Geometry 5 "c".
    void saveOddModel() const {
        Mox::Model odd;
        odd.saveTo(model, {true, "", "", ""});
        odd.addNode(Mox::Group, "a/b");
        const auto first = odd.addNode(Mox::Shape, "c");
        odd.addArrayProperty("Ids", Mox::NodeIds, Mox::Array1d<unsigned>{0, 16777217, 4294967295}, first,
                             Mox::Step{});
        odd.setCurrentNodeId(1);
        const auto second = odd.addNode(Mox::Shape, "c");
        odd.addArrayProperty("../T", Mox::NodeScalar, Mox::Array1d<float>{5}, second, Mox::Step{"t/1", {}});
        odd.close();
    }

    Support::TemporaryFolder folder;
    std::string model = folder.path("model.mox");
};

} // namespace

TEST_F(ExtractCommand, WritesOneLineForEachItem) {
    expectOutput(extract({"--node", "/Assembly/Cube", "--data", "Coordinates"}),
                 "Coordinates_x,Coordinates_y,Coordinates_z\n0,0.1,1e+20\n-inf,nan,-0\n");
}

TEST_F(ExtractCommand, FollowsLinksToTheNumbers) {
    expectOutput(extract({"--node", "/Assembly/Cube", "--data", "Temperature", "--step", "Step 2"}),
                 "Temperature\n20\n80\n");
}

TEST_F(ExtractCommand, WritesForNumPy) {
    expectOutput(extract({"--id", "3", "--data", "Temperature", "--step", "Step 1", "--format", "npy"}),
                 std::string("\x93NUMPY\x01\x00\x76\x00", 10) +
                     "{'descr': '<f4', 'fortran_order': False, 'shape': (2,), }" + std::string(60, ' ') +
                     "\n" + std::string("\0\0\xA0\x41\0\0\xA0\x42", 8));
}

TEST_F(ExtractCommand, WritesRawNumbersItemByItem) {
    const auto run = extract({"--id", "2", "--data", "Coordinates", "--format", "raw"});
    expectOutput(run, std::string("\0\0\0\0\xCD\xCC\xCC\x3D\xEC\x78\xAD\x60"
                                  "\0\0\x80\xFF\0\0\xC0\x7F\0\0\0\x80",
                                  24));
}

TEST_F(ExtractCommand, IntegersStayWhole) {
    saveOddModel();
    expectOutput(extract({"--id", "2", "--data", "Ids"}), "Ids\n0\n16777217\n4294967295\n");
    expectOutput(extract({"--id", "2", "--data", "Ids", "--format", "raw"}),
                 std::string("\0\0\0\0\x01\0\0\x01\xFF\xFF\xFF\xFF", 12));
}

TEST_F(ExtractCommand, PathsWithSlashesInNamesAndIdsReachAllNodes) {
    saveOddModel();
    EXPECT_EQ(extract({"--node", "/a\\/b/c", "--data", "Ids"}).exitCode, 0);
    expectOutput(extract({"--node", "/a\\/b/c#4", "--data", "../T", "--step", "t/1"}), "../T\n5\n");
    expectOutput(extract({"--node", "#4", "--data", "../T", "--step", "t/1"}), "../T\n5\n");
    expectOutput(extract({"--id", "4", "--data", "../T", "--step", "t/1"}), "../T\n5\n");
    expectFailure(extract({"--node", "/a/b/c", "--data", "Ids"}),
                  model + ": has no node \"/a/b/c\"; mox tree shows all nodes");
}

TEST_F(ExtractCommand, NameOfTheOutputDecidesTheFormat) {
    const auto npy = folder.path("t.npy");
    expectOutput(extract({"--id", "3", "--data", "Coordinates", "-o", npy}), "");
    EXPECT_EQ(folder.read("t.npy").size(), 128U + 24U);
    expectOutput(extract({"--id", "3", "--data", "Coordinates", "-o", folder.path("t.txt")}), "");
    EXPECT_EQ(folder.read("t.txt"), "Coordinates_x,Coordinates_y,Coordinates_z\n0,0.1,1e+20\n-inf,nan,-0\n");
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"model.mox", "t.npy", "t.txt"}));
}

TEST_F(ExtractCommand, ExistingFileIsKeptUnlessToBeOverwritten) {
    const auto output = folder.write("t.csv", "precious");
    const std::vector<std::string> options = {"--id",   "3",      "--data", "Temperature",
                                              "--step", "Step 1", "-o",     output};
    expectFailure(extract(options), output + ": exists already; --overwrite replaces it");
    EXPECT_EQ(folder.read("t.csv"), "precious");
    auto overwriting = options;
    overwriting.emplace_back("--overwrite");
    expectOutput(extract(overwriting), "");
    EXPECT_EQ(folder.read("t.csv"), "Temperature\n20\n80\n");
}

TEST_F(ExtractCommand, InputIsNeverReplaced) {
    expectFailure(extract({"--id", "3", "--data", "Coordinates", "--overwrite", "-o", model}),
                  model + ": is the input itself");
}

TEST_F(ExtractCommand, ListsWhatThereIsInsteadOfAMissingDataset) {
    expectFailure(extract({"--node", "/Assembly/Cube", "--data", "Stress"}),
                  model + ": /Assembly/Cube has no dataset \"Stress\" without a step; the node has "
                          "\"Coordinates\", \"Temperature\"");
    expectFailure(extract({"--node", "/Assembly/Cube", "--data", "Temperature"}),
                  model + ": /Assembly/Cube has no dataset \"Temperature\" without a step; it has the steps "
                          "1, 2 (option --step)");
    expectFailure(extract({"--id", "1", "--data", "Temperature"}),
                  model + ": /Assembly has no datasets; name a shape or its geometry");
    expectFailure(extract({"--id", "5", "--data", "Temperature"}),
                  model + ": has no node 5; mox tree shows all ids");
}

TEST_F(ExtractCommand, AllGoesIntoAFolderWithAnIndex) {
    expectOutput(extract({"--all", folder.path("out")}), "");
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"model.mox", "out"}));
    EXPECT_EQ(folder.read("out/3-0-Coordinates.csv"),
              "Coordinates_x,Coordinates_y,Coordinates_z\n0,0.1,1e+20\n-inf,nan,-0\n");
    EXPECT_EQ(folder.read("out/3-1-Temperature-Step_1.csv"), "Temperature\n20\n80\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path("out/3-2-Temperature-Step_2.csv")));
    EXPECT_EQ(nlohmann::json::parse(folder.read("out/index.json")), nlohmann::json::parse(R"({"format": "csv",
        "datasets": [
            {"file": "3-0-Coordinates.csv", "node": "/Assembly/Cube", "id": 3, "name": "Coordinates",
             "type": "Coordinates", "element": "float", "items": 2, "components": 3, "link": false},
            {"file": "3-1-Temperature-Step_1.csv", "node": "/Assembly/Cube", "id": 3, "name": "Temperature",
             "step": "Step 1", "type": "NodeScalar", "element": "float", "items": 2, "components": 1,
             "link": false},
            {"file": "3-1-Temperature-Step_1.csv", "node": "/Assembly/Cube", "id": 3, "name": "Temperature",
             "step": "Step 2", "type": "NodeScalar", "element": "float", "items": 2, "components": 1,
             "link": true}]})"));
}

TEST_F(ExtractCommand, StepIsChosenByItsNumberItsTimeOrItsPlace) {
    saveSteppedModel(model);
    for (const std::string step : {"3", "Step 3", "@0.5"}) {
        expectOutput(extract({"--node", "/Root/A", "--data", "T", "--step", step}), "T\n30\n-30\n");
    }
    expectOutput(extract({"--node", "/Root/A", "--data", "T", "--step", "first"}), "T\n10\n-10\n");
}

TEST_F(ExtractCommand, OneDatasetHasOneStep) {
    saveSteppedModel(model);
    expectFailure(extract({"--node", "/Root/A", "--data", "T", "--step", "1:3"}),
                  model +
                      ": \"1:3\" names 3 steps; name one, or extract the datasets of all of them with --all");
    expectFailure(extract({"--node", "/Root/A", "--data", "T", "--step", "2"}),
                  model + ": /Root/A has no dataset \"T\" of step 2 @0.25; it has the steps 1 @0, "
                          "3 @0.5, 5 @1 (option --step)");
}

TEST_F(ExtractCommand, AllOfSomeStepsTakesTheirDatasetsAlone) {
    saveSteppedModel(model);
    expectOutput(extract({"--all", folder.path("out"), "--step", "@0.25:3"}), "");
    const auto index = nlohmann::json::parse(folder.read("out/index.json")).at("datasets");
    ASSERT_EQ(index.size(), 3U);
    EXPECT_EQ(index[0].at("step"), "Step 3");
    EXPECT_EQ(index[1].at("step"), "Step 2");
    EXPECT_EQ(folder.read("out/5-1-T-Step_2.csv"), "T\n2\n-2\n");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("out")), {}), 4);
}

TEST_F(ExtractCommand, AllOfAStepOfLinksTakesTheNumbersOfAnother) {
    expectOutput(extract({"--all", folder.path("out"), "--step", "2"}), "");
    EXPECT_EQ(folder.read("out/3-1-Temperature-Step_1.csv"), "Temperature\n20\n80\n");
    EXPECT_EQ(nlohmann::json::parse(folder.read("out/index.json")).at("datasets").at(0).at("step"), "Step 2");
}

TEST_F(ExtractCommand, NamesOfDatasetsCannotLeaveTheFolder) {
    saveOddModel();
    expectOutput(extract({"--all", folder.path("out/"), "--format", "raw"}), "");
    EXPECT_EQ(folder.read("out/5-0-.._T-t_1.raw"), std::string("\0\0\xA0\x40", 4));
    EXPECT_EQ(folder.read("out/3-0-Ids.raw").size(), 12U);
}

TEST_F(ExtractCommand, PathsOfTheIndexAreTakenAgain) {
    saveOddModel();
    ASSERT_EQ(extract({"--all", folder.path("out")}).exitCode, 0);
    const auto index = nlohmann::json::parse(folder.read("out/index.json"));
    EXPECT_EQ(index["datasets"].size(), 2U);
    for (const auto& entry : index["datasets"]) {
        expectOutput(extract({"-n", entry["node"], "-d", entry["name"], "-s", entry.value("step", "")}),
                     folder.read("out/" + entry["file"].get<std::string>()));
    }
}

TEST_F(ExtractCommand, ExistingFolderIsLeftAlone) {
    std::filesystem::create_directory(folder.path("out"));
    expectFailure(extract({"--all", folder.path("out")}),
                  folder.path("out") + ": exists already; give the name of a new folder");
    expectFailure(extract({"--all", folder.path("none/out")}),
                  folder.path("none/out") + ": the folder that is to hold it does not exist");
    expectFailure(extract({"--all", "-"}), "-: stdout can't take a folder; name one");
}

TEST_F(ExtractCommand, DamagedNumbersLeaveNothingBehind) {
    auto damaged = folder.read("model.mox");
    // The first block holds the numbers: length word, zlib header, bytes.
    auto& byte = damaged[2800 + 4 + 2 + 3];
    byte = static_cast<char>(byte ^ 0x10);
    folder.write("model.mox", damaged);
    const auto all = extract({"--all", folder.path("out")});
    EXPECT_EQ(all.exitCode, 1);
    EXPECT_TRUE(all.messages.starts_with("mox extract: " + model + ": ")) << all.messages;
    EXPECT_EQ(extract({"--id", "3", "--data", "Coordinates", "-o", folder.path("c.csv")}).exitCode, 1);
    EXPECT_EQ(extract({"--id", "3", "--data", "Coordinates"}).output, "");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"model.mox"});
}

TEST_F(ExtractCommand, WrongUsageIsToldApart) {
    const auto noNode = extract({"--data", "Coordinates"});
    EXPECT_EQ(noNode.exitCode, 2);
    EXPECT_EQ(noNode.messages, "mox extract: --node, --id or --all is required (see mox extract --help)\n");
    EXPECT_EQ(extract({"--id", "3"}).messages,
              "mox extract: --dataset is required (see mox extract --help)\n");
    EXPECT_EQ(extract({"--id", "3", "--node", "/a", "--data", "b"}).exitCode, 2);
    EXPECT_EQ(extract({"--all", folder.path("out"), "--data", "b"}).exitCode, 2);
    EXPECT_EQ(extract({"--id", "3", "--data", "b", "--format", "docx"}).exitCode, 2);
}

TEST_F(ExtractCommand, HelpShowsFormatsAndExamples) {
    const auto run = runMox({"extract", "--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("mox extract bracket.mox --all numbers --format npy"), std::string::npos);
    EXPECT_NE(run.output.find("for NumPy: float32 or uint32"), std::string::npos);
}

namespace {

/// A line of three nodes, moved by a group, in two elements: Group 1 "root", Group 2 "moved", Shape 3 and
/// Geometry 4 "line" with ids and the result "Flow, \"out\"" on elements.
void saveLine(const std::string& path, const Mox::Array1d<unsigned>& nodes) {
    Mox::Model file;
    file.saveTo(path, {true, "", "", ""});
    file.addNode(Mox::Group, "root");
    Mox::NodeProperties moved;
    moved.set(Mox::Translation, std::vector<float>{100, 0, 0});
    file.setNodeData(file.addNode(Mox::Group, "moved"), moved);
    const auto line = file.addNode(Mox::Shape, "line");
    const Mox::Step none;
    file.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(3, 3, {0, 0, 0, 1, 0, 0.5F, 4, 0, 2}), line,
                          none);
    file.addArrayProperty(Mox::Connectivity0, nodes, line, none);
    file.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned>{2, 2}, line, none);
    file.addArrayProperty(Mox::NodeIds, Mox::Array1d<unsigned>{7, 9, 11}, line, none);
    file.addArrayProperty("Element IDs", Mox::ElementScalar, Mox::Array1d<unsigned>{70, 71}, line, none);
    file.addArrayProperty("U", Mox::NodeVector, Mox::Array2d<float>(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), line,
                          none);
    file.addArrayProperty("Flow, \"out\"", Mox::ElementScalar, Mox::Array1d<float>{5, 6}, line, none);
    file.addArrayProperty("Grid", Mox::FourthScalarA, Mox::Array1d<float>{1}, line, none);
    file.close();
}

} // namespace

TEST_F(ExtractCommand, IdsAndCoordinatesStandBesideTheNumbersOfNodes) {
    saveLine(model, {0, 1, 1, 2});
    expectOutput(extract({"-n", "/root/moved/line", "-d", "U", "--ids", "--coordinates"}),
                 "id,x,y,z,U_x,U_y,U_z\n7,0,0,0,1,2,3\n9,1,0,0.5,4,5,6\n11,4,0,2,7,8,9\n");
    expectOutput(extract({"-n", "/root/moved/line", "-d", "Coordinates", "--ids", "--no-header"}),
                 "7,0,0,0\n9,1,0,0.5\n11,4,0,2\n");
}

TEST_F(ExtractCommand, CoordinatesOfAnElementAreTheMeanOfItsNodes) {
    saveLine(model, {0, 1, 1, 2});
    expectOutput(extract({"--id", "4", "-d", "Flow, \"out\"", "--ids", "--coordinates"}),
                 "id,x,y,z,\"Flow, \"\"out\"\"\"\n70,0.5,0,0.25,5\n71,2.5,0,1.25,6\n");
}

TEST_F(ExtractCommand, RowsAreCountedFrom0AndBothEndsAreTaken) {
    saveLine(model, {0, 1, 1, 2});
    expectOutput(extract({"--id", "4", "-d", "Node Ids", "--rows", "1:2"}), "Node Ids\n9\n11\n");
    expectOutput(extract({"--id", "4", "-d", "Node Ids", "--rows", "0"}), "Node Ids\n7\n");
    expectOutput(extract({"--id", "4", "-d", "Node Ids", "--rows", ":1", "--ids"}),
                 "id,Node Ids\n7,7\n9,9\n");
    expectOutput(extract({"--id", "4", "-d", "Node Ids", "--rows", "2:99"}), "Node Ids\n11\n");
    expectOutput(extract({"--id", "4", "-d", "U", "--rows", "1:", "--no-header"}), "4,5,6\n7,8,9\n");
    expectOutput(extract({"--id", "4", "-d", "Node Ids", "--rows", "1", "--format", "raw"}),
                 std::string("\x09\0\0\0", 4));
    expectFailure(extract({"--id", "4", "-d", "Node Ids", "--rows", "3:5"}),
                  model + ": the dataset has no row 3: it has 3, counted from 0");
}

TEST_F(ExtractCommand, RangeThatIsNoneIsWrongUsage) {
    for (const auto* rows : {"", ":", "2:1", "a", "1:b", "-1", "1:2:3", "1 2", "99999999999999999999"}) {
        EXPECT_EQ(extract({"--id", "3", "-d", "Coordinates", "--rows", rows}).exitCode, 2) << rows;
    }
}

TEST_F(ExtractCommand, IdsThatAreNotThereAreAFailure) {
    expectFailure(extract({"--id", "3", "-d", "Coordinates", "--ids"}),
                  model + ": /Assembly/Cube: has no \"Node Ids\" of integers");
    saveLine(model, {0, 1, 1, 2});
    expectFailure(
        extract({"--id", "4", "-d", "Grid", "--coordinates"}),
        model + ": /root/moved/line: the rows of Grid are neither nodes nor elements, so there is nothing "
                "for --coordinates");
}

TEST_F(ExtractCommand, ElementsWithoutTheirNodesHaveNoCoordinates) {
    for (const auto& nodes : {Mox::Array1d<unsigned>{0, 1, 1, 3}, Mox::Array1d<unsigned>{0, 1, 1}}) {
        saveLine(model, nodes);
        expectFailure(extract({"--id", "4", "-d", "Element IDs", "--coordinates"}),
                      model +
                          ": /root/moved/line: its elements and their nodes contradict each other; mox check "
                          "lists all damage");
    }
}

TEST_F(ExtractCommand, ColumnsBesideTheNumbersAreForCsvAlone) {
    for (const auto* option : {"--ids", "--coordinates", "--no-header"}) {
        EXPECT_EQ(
            extract({"--id", "3", "-d", "b", option, "--format", "npy"}).messages,
            "mox extract: --ids, --coordinates and --no-header are for csv alone (see mox extract --help)\n");
    }
    EXPECT_EQ(extract({"--all", folder.path("out"), "--ids"}).exitCode, 2);
}

TEST_F(ExtractCommand, HeaderShowsNamesAsTheTreeDoes) {
    Mox::Model file;
    file.saveTo(model, {true, "", "", ""});
    file.addNode(Mox::Group, "root");
    const auto shape = file.addNode(Mox::Shape, "s");
    file.addArrayProperty("\x1B[2J\n", Mox::NodeScalar, Mox::Array1d<float>{1}, shape, Mox::Step{});
    file.close();
    expectOutput(extract({"--id", "2", "-d", "\x1B[2J\n"}), "\\x1B[2J\\n\n1\n");
}
