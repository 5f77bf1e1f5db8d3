#include "../../common/MoxRun.h"
#include "../ForeignModel.h"
#include "Support/TemporaryFolder.h"
#include "VtkReading.h"

#include <cmath>

namespace {

using Numbers = std::vector<double>;
using Series = std::vector<std::pair<double, std::string>>;

class ExportVtk : public testing::Test {
protected:
    void SetUp() override {
        if (!VtkReading::hasPython()) {
            GTEST_SKIP() << "python3 is not installed";
        }
        saveForeignModel(folder.path("model.mox"));
    }

    VtkMeshRead read(const std::string& name) const {
        return reading.read("xml", {folder.path(name)}).value().at(0);
    }

    Support::TemporaryFolder folder;
    VtkReading reading;
};

} // namespace

TEST_F(ExportVtk, AllPartsStandInOneMesh) {
    ASSERT_EQ(
        runMox({"export", "--step", "Load", folder.path("model.mox"), folder.path("load.vtu")}).exitCode, 0);
    const auto mesh = read("load.vtu");
    EXPECT_EQ(mesh.points, 14U);
    EXPECT_EQ(mesh.numbers("Cells/types"), (Numbers{5, 9, 9, 12}));
    EXPECT_EQ(mesh.numbers("Cells/offsets"), (Numbers{3, 7, 11, 19}));
    EXPECT_EQ(mesh.numbers("Cells/connectivity"),
              (Numbers{0, 1, 4, 0, 1, 4, 3, 1, 2, 5, 4, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_EQ(mesh.numbers("CellData/Part"), (Numbers{0, 0, 0, 1}));
    EXPECT_EQ(mesh.texts("FieldData/Part Names"), (std::vector<std::string>{"Faces", "Cube"}));
    EXPECT_EQ(mesh.arrays.at("Points/Points").type, "Float32");
    EXPECT_EQ(mesh.numbers("Points/Points").at(3), 12);
}

TEST_F(ExportVtk, StepHasItsResultsAndThoseWithoutStep) {
    ASSERT_EQ(
        runMox({"export", "--step", "Load", folder.path("model.mox"), folder.path("load.vtu")}).exitCode, 0);
    const auto mesh = read("load.vtu");
    const auto& stress = mesh.arrays.at("CellData/Stress");
    EXPECT_EQ(stress.columns, 6U);
    EXPECT_EQ(Numbers(stress.numbers.end() - 6, stress.numbers.end()), (Numbers{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(std::isnan(stress.numbers.front()));
    const auto& thickness = mesh.numbers("CellData/Thickness");
    EXPECT_EQ(Numbers(thickness.begin(), thickness.begin() + 3), (Numbers{0.25, 0.5, 0.75}));
    EXPECT_EQ(mesh.numbers("FieldData/TimeValue"), Numbers{0.1});
    EXPECT_FALSE(mesh.arrays.contains("PointData/Displacement"));
}

TEST_F(ExportVtk, SeriesHasModesByFrequencyWithTranslationAndRotationApart) {
    const auto run = runMox({"export", folder.path("model.mox"), folder.path("all steps.pvd")});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_EQ(reading.series(folder.path("all steps.pvd")),
              (Series{{0.1, "all steps_steps/step_00001.vtu"}, {12.5, "all steps_steps/step_00002.vtu"}}));
    const auto mesh = read("all steps_steps/step_00002.vtu");
    EXPECT_EQ(mesh.arrays.at("PointData/Displacement").columns, 3U);
    EXPECT_EQ(mesh.numbers("PointData/Rotation").back(), 0.125);
    EXPECT_EQ(mesh.texts("FieldData/Step"), std::vector<std::string>{"Mode 1"});
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"all steps.pvd", "all steps_steps", "model.mox"}));
}

TEST_F(ExportVtk, NodesOfLargeSolidsStandInVtksOrder) {
    namespace Mox = Qel::Mox2;
    {
        Mox::Model model;
        model.saveTo(folder.path("large.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, "large");
        const auto solid = model.addNode(Mox::Shape, "Brick <\"&\">");
        model.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(20, 3, 0.5F), solid, Mox::Step{});
        Mox::Array1d<unsigned int> nodes(20);
        for (unsigned int i = 0; i < 20; ++i) {
            nodes[i] = i;
        }
        model.addArrayProperty(Mox::Connectivity2, nodes, solid, Mox::Step{});
        model.addArrayProperty(Mox::Polylength2, Mox::Array1d<unsigned int>{20}, solid, Mox::Step{});
        model.addArrayProperty("a<b & \"c\"", Mox::NodeScalar, nodes, solid, Mox::Step{});
        model.close();
    }
    ASSERT_EQ(runMox({"export", folder.path("large.mox"), folder.path("large.vtu")}).exitCode, 0);
    const auto mesh = read("large.vtu");
    EXPECT_EQ(mesh.numbers("Cells/types"), Numbers{25});
    EXPECT_EQ(mesh.numbers("Cells/connectivity"),
              (Numbers{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 12, 13, 14, 15}));
    EXPECT_EQ(mesh.arrays.at("PointData/a<b & \"c\"").type, "UInt32");
    EXPECT_EQ(mesh.numbers("PointData/a<b & \"c\"").back(), 19);
    EXPECT_EQ(mesh.texts("FieldData/Part Names"), std::vector<std::string>{"Brick <\"&\">"});
}

TEST_F(ExportVtk, NamesThatXmlOrAListCanNotHoldAreEscaped) {
    namespace Mox = Qel::Mox2;
    const std::string name = std::string("T\xEF\xBF\xBE\xEF\xBF\xBF\x01\0", 9) + "end";
    {
        Mox::Model model;
        model.saveTo(folder.path("odd.mox"), {true, "", "", ""});
        model.addNode(Mox::RootGroup, "odd");
        const auto line = model.addNode(Mox::Shape, name);
        model.addArrayProperty(Mox::Coordinates, Mox::Array2d<float>(2, 3, 0.5F), line, Mox::Step{});
        model.addArrayProperty(Mox::Connectivity0, Mox::Array1d<unsigned int>{0, 1}, line, Mox::Step{});
        model.addArrayProperty(Mox::Polylength0, Mox::Array1d<unsigned int>{2}, line, Mox::Step{});
        model.addArrayProperty(name, Mox::NodeScalar, Mox::Array1d<float>{1, 2}, line, Mox::Step{});
        model.close();
    }
    ASSERT_EQ(runMox({"export", folder.path("odd.mox"), folder.path("odd.vtu")}).exitCode, 0);
    const auto mesh = read("odd.vtu");
    EXPECT_TRUE(mesh.arrays.contains("PointData/T\\xEF\\xBF\\xBE\\xEF\\xBF\\xBF\\x01\\x00end"));
    EXPECT_EQ(mesh.texts("FieldData/Part Names"),
              std::vector<std::string>{"T\xEF\xBF\xBE\xEF\xBF\xBF\x01\\x00end"});
}
