#include "../../common/MoxRun.h"
#include "../ForeignModel.h"
#include "Support/TemporaryFolder.h"
#include "exodus/ExodusFile.h"

#include <cmath>
#include <memory>

namespace {

using Names = std::vector<std::string>;
using Numbers = std::vector<double>;
using Nodes = std::vector<std::int64_t>;

class ExportExodus : public testing::Test {
protected:
    void exportForeignModel(const std::vector<std::string>& options = {}) {
        saveForeignModel(folder.path("model.mox"));
        std::vector<std::string> arguments = {"export", folder.path("model.mox"), folder.path("out.exo")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        run = runMox(arguments);
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        file = std::make_unique<MoxTool::ExodusFile>(folder.path("out.exo"));
    }

    bool says(const std::string& line) const { return run.messages.find(line + "\n") != std::string::npos; }

    Numbers elementValues(std::size_t variable, std::size_t block, std::size_t step) const {
        const auto& elements = file->blocks().at(block);
        return file->values(EX_ELEM_BLOCK, variable, elements.id, step, elements.elementCount);
    }

    Support::TemporaryFolder folder;
    MoxRun run{};
    std::unique_ptr<MoxTool::ExodusFile> file;
};

} // namespace

TEST_F(ExportExodus, GeometryOfSeveralLengthsPartsIntoOneBlockForEach) {
    exportForeignModel();
    const auto& blocks = file->blocks();
    ASSERT_EQ(blocks.size(), 3U);
    EXPECT_EQ(blocks[0].name, "Faces 3");
    EXPECT_EQ(blocks[0].elementType, "TRI3");
    EXPECT_EQ(blocks[0].id, 1);
    EXPECT_EQ(file->connectivity(blocks[0]), (Nodes{1, 2, 5}));
    EXPECT_EQ(blocks[1].name, "Faces 4");
    EXPECT_EQ(blocks[1].elementType, "SHELL4");
    EXPECT_EQ(file->connectivity(blocks[1]), (Nodes{1, 2, 5, 4, 2, 3, 6, 5}));
    EXPECT_EQ(blocks[2].name, "Cube");
    EXPECT_EQ(blocks[2].elementType, "HEX8");
    EXPECT_EQ(blocks[2].id, 3);
    EXPECT_EQ(file->connectivity(blocks[2]), (Nodes{7, 8, 9, 10, 11, 12, 13, 14}));
}

TEST_F(ExportExodus, NodesStandWhereTheirGroupsPutThem) {
    exportForeignModel();
    EXPECT_STREQ(file->counts().title, "Assembly");
    EXPECT_EQ(file->coordinates(0), (Numbers{10, 12, 14, 10, 12, 14, 0, 1, 1, 0, 0, 1, 1, 0}));
    EXPECT_EQ(file->coordinates(1), (Numbers{0, 0, 0, 1, 1, 1, 0, 0, 1, 1, 0, 0, 1, 1}));
}

TEST_F(ExportExodus, ColumnsBecomeVariablesNamedByTheirDirections) {
    exportForeignModel();
    EXPECT_EQ(file->variableNames(EX_ELEM_BLOCK), (Names{"Thickness", "Stress_xx", "Stress_yy", "Stress_zz",
                                                         "Stress_xy", "Stress_yz", "Stress_zx"}));
    EXPECT_EQ(file->variableNames(EX_NODAL), (Names{"Displacement_x", "Displacement_y", "Displacement_z",
                                                    "Rotation_x", "Rotation_y", "Rotation_z"}));
    EXPECT_EQ(elementValues(3, 2, 0), Numbers{3});
    EXPECT_EQ(elementValues(6, 2, 0), Numbers{6});
}

TEST_F(ExportExodus, ElementsOfADividedGeometryKeepTheirResults) {
    exportForeignModel();
    for (std::size_t step = 0; step < 2; ++step) {
        EXPECT_EQ(elementValues(0, 0, step), Numbers{0.25});
        EXPECT_EQ(elementValues(0, 1, step), (Numbers{0.5, 0.75}));
    }
}

TEST_F(ExportExodus, StepsHaveTheirTimeOrTheirFrequency) {
    exportForeignModel();
    EXPECT_EQ(file->times(), (Numbers{0.1, 12.5}));
}

TEST_F(ExportExodus, NanStandsWhereAStepHasNoResult) {
    exportForeignModel();
    EXPECT_TRUE(std::isnan(elementValues(1, 2, 1).at(0)));
    const auto displacements = file->values(EX_NODAL, 0, 1, 1, 14);
    EXPECT_TRUE(std::isnan(displacements[5]));
    EXPECT_EQ(displacements[6], 0.125);
    EXPECT_EQ(displacements[13], 0.125);
    EXPECT_TRUE(says("note: NaN stands where a node or an element has no result in a step"));
}

TEST_F(ExportExodus, SummarySaysWhatIsNotTaken) {
    exportForeignModel();
    EXPECT_TRUE(says(folder.path("out.exo") + ": shapes: 2, nodes: 14, elements: 4, steps: 2, datasets: 4"));
    EXPECT_TRUE(says("not taken: geometries without Coordinates, Connectivity and Polylength: 1 (Empty)"));
    EXPECT_TRUE(
        says("not taken: datasets that are no results on nodes or elements: 1 (Grid [FourthScalarA])"));
    EXPECT_TRUE(says("not taken: groups below the root, since the blocks stand in one list: 1"));
    EXPECT_TRUE(says("not taken: materials of shapes: 3"));
    EXPECT_TRUE(says("note: transforms of groups are applied to coordinates, not to results"));
    EXPECT_TRUE(says("note: results without steps are repeated in each step"));
    EXPECT_EQ(run.output, "");
}

TEST_F(ExportExodus, OneStepCanBeTakenAlone) {
    exportForeignModel({"--step", "Mode 1"});
    EXPECT_EQ(file->times(), Numbers{12.5});
    EXPECT_EQ(file->values(EX_NODAL, 4, 1, 0, 14).at(9), 0.125);
}

TEST_F(ExportExodus, ImportedPolygonsOfAPlaneComeBack) {
    namespace Mox = Qel::Mox2;
    {
        Mox::Attributes plane, block;
        plane.set("Dimensions", 2);
        block.set("Element Type", "nsided");
        block.set("Block Id", 7);
        block.set("Block Name", "");
        Mox::Model model;
        model.saveTo(folder.path("plane.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, "plane", plane);
        const auto cells = model.addNode(Mox::Shape, "Block 7");
        const Mox::Array2d<float> corners(5, 3, {0, 0, 0, 2, 0, 0, 3, 1, 0, 2, 2, 0, 0, 2, 0});
        model.addArrayProperty(Mox::Coordinates, corners, cells, Mox::Step{});
        model.addArrayProperty(Mox::Connectivity1, Mox::Array1d<unsigned int>{0, 1, 3, 4, 1, 2, 3}, cells,
                               Mox::Step{}, block);
        model.addArrayProperty(Mox::Polylength1, Mox::Array1d<unsigned int>{4, 3}, cells, Mox::Step{});
        model.addArrayProperty(Mox::NodeIds, Mox::Array1d<unsigned int>{5, 4, 3000000000, 2, 1}, cells,
                               Mox::Step{});
        model.close();
    }
    run = runMox({"export", folder.path("plane.mox"), folder.path("plane.e")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    const MoxTool::ExodusFile plane(folder.path("plane.e"));
    EXPECT_EQ(plane.dimension(), 2);
    const auto& block = plane.blocks().at(0);
    EXPECT_EQ(block.id, 7);
    EXPECT_EQ(block.name, "");
    EXPECT_EQ(block.elementType, "nsided");
    EXPECT_EQ(plane.connectivity(block), (Nodes{1, 2, 4, 5, 2, 3, 4}));
    EXPECT_EQ(plane.nodesOfEachElement(block), (std::vector<int>{4, 3}));
    EXPECT_EQ(plane.idMap(EX_NODE_MAP, 5), (Nodes{5, 4, 3000000000, 2, 1}));
}

TEST_F(ExportExodus, NodesWithDifferentResultsAreKeptApart) {
    namespace Mox = Qel::Mox2;
    {
        Mox::Model model;
        model.saveTo(folder.path("lines.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, "lines");
        const auto first = model.addNode(Mox::Shape, "First");
        model.setCurrentNodeId(1);
        const auto second = model.addNode(Mox::Shape, "Second");
        const Mox::Array1d<unsigned int> both{first, second};
        model.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(2, 3, {0, 0, 0, 1, 0, 0}), both,
                               Mox::Step{});
        model.addArrayProperty(Mox::Connectivity0, Mox::Array1d<unsigned int>{0, 1}, both, Mox::Step{});
        model.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned int>{2}, both, Mox::Step{});
        model.addArrayProperty(Mox::NodeIds, Mox::Array1d<unsigned int>{8, 9}, both, Mox::Step{});
        model.addArrayProperty("Heat", Mox::NodeScalar, Mox::Array1d<float>{1, 2}, first, Mox::Step{"A", {}});
        model.addArrayProperty("Heat", Mox::NodeScalar, Mox::Array1d<float>{3, 4}, second,
                               Mox::Step{"A", {}});
        model.close();
    }
    run = runMox({"export", folder.path("lines.mox"), folder.path("lines.e")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    const MoxTool::ExodusFile lines(folder.path("lines.e"));
    EXPECT_EQ(lines.values(EX_NODAL, 0, 1, 0, 4), (Numbers{1, 2, 3, 4}));
    EXPECT_EQ(lines.connectivity(lines.blocks().at(1)), (Nodes{3, 4}));
    EXPECT_EQ(lines.times(), Numbers{0});
    EXPECT_TRUE(says("note: Node Ids are left out, since some are not unique in the whole model"));
}

TEST_F(ExportExodus, LongNamesAndLargeIdsComeBackWhole) {
    namespace Mox = Qel::Mox2;
    const std::string longName(200, 'n');
    {
        Mox::Attributes block;
        block.set("Block Id", "9000000000");
        Mox::Model model;
        model.saveTo(folder.path("long.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, std::string(100, 't'));
        const auto point = model.addNode(Mox::Shape, longName);
        model.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(1, 3, 0.0F), point, Mox::Step{});
        model.addArrayProperty(Mox::Connectivity0, Mox::Array1d<unsigned int>{0}, point, Mox::Step{}, block);
        model.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned int>{1}, point, Mox::Step{});
        model.addArrayProperty(longName, Mox::NodeScalar, Mox::Array1d<float>{4}, point, Mox::Step{});
        model.close();
    }
    run = runMox({"export", folder.path("long.mox"), folder.path("long.e")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    const MoxTool::ExodusFile read(folder.path("long.e"));
    EXPECT_EQ(read.blocks().at(0).id, 9000000000);
    EXPECT_EQ(read.blocks().at(0).name, longName);
    EXPECT_EQ(read.blocks().at(0).elementType, "SPHERE");
    EXPECT_EQ(read.variableNames(EX_NODAL), Names{longName});
    EXPECT_EQ(read.values(EX_NODAL, 0, 1, 0, 1), Numbers{4});
    EXPECT_EQ(read.counts().title, std::string(80, 't'));
    EXPECT_TRUE(says("note: titles are cut to 80 letters, since an Exodus II file allows no more: 1 (\"" +
                     std::string(40, 't') + "...\")"));
    EXPECT_TRUE(says("note: results without steps stand in one step of time 0"));
}

TEST_F(ExportExodus, TextsThatExodusCutsAreSaidToBeCutOncePerKind) {
    namespace Mox = Qel::Mox2;
    const std::string longName(300, 'n');
    {
        Mox::Attributes root;
        root.set("QA Record 1", std::string(33, 'p') + ", 1.0, " + std::string(40, 'd') + ", noon");
        Mox::Model model;
        model.saveTo(folder.path("long.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, "short", root);
        const auto point = model.addNode(Mox::Shape, "Point");
        model.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(1, 3, 0.0F), point, Mox::Step{});
        model.addArrayProperty(Mox::Connectivity0, Mox::Array1d<unsigned int>{0}, point, Mox::Step{});
        model.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned int>{1}, point, Mox::Step{});
        for (const auto* end : {"1", "2", "3"}) {
            model.addArrayProperty(longName + end, Mox::NodeScalar, Mox::Array1d<float>{4}, point,
                                   Mox::Step{});
        }
        model.close();
    }
    run = runMox({"export", folder.path("long.mox"), folder.path("long.e")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(says("note: names of variables are cut to 255 letters, since an Exodus II file allows no "
                     "more: 3 (\"" +
                     std::string(40, 'n') + "...\" and more)"))
        << run.messages;
    EXPECT_TRUE(says("note: texts of QA records are cut to 32 letters, since an Exodus II file allows no "
                     "more: 2 (\"" +
                     std::string(33, 'p') + "\" and more)"))
        << run.messages;
}
