// Imports every Exodus file at hand, exports it for VTK, has other programs read the result, and compares
// that with what the Exodus library reads from the original, number for number.

#include "../TemporaryFolder.h"
#include "../common/MoxRun.h"
#include "VtkReading.h"
#include "import/ExodusFile.h"
#include "realExodusFiles.h"

#include <cmath>
#include <memory>

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;
using Numbers = std::vector<double>;

// By the names of types in the files at hand.
double vtkCellOf(std::string type) {
    for (auto& letter : type)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    const std::map<std::string, double> cells = {{"SPHERE", 1}, {"BAR2", 3},    {"TRI3", 5}, {"SHELL4", 9},
                                                 {"TET4", 10},  {"WEDGE6", 13}, {"HEX8", 12}};
    return cells.at(type);
}

class ExportVtkFiles : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (GetParam().empty())
            GTEST_SKIP() << "no Exodus files in " << MOXWRITER_DATA_DIR;
        if (!VtkReading::hasPython())
            GTEST_SKIP() << "python3 is not installed";
        original = std::make_unique<MoxTool::ExodusFile>(GetParam());
        ASSERT_EQ(runMox({"import", GetParam(), folder.path("model.mox")}).exitCode, 0);
        const auto run = runMox({"export", folder.path("model.mox"), folder.path("out.pvd")});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        series = reading.series(folder.path("out.pvd"));
    }

    bool hasResults() const {
        return !original->variableNames(EX_NODAL).empty() || !original->variableNames(EX_ELEM_BLOCK).empty();
    }

    void compareFiles(const std::string& way) {
        for (std::size_t step = 0; step < series.size(); step += 5) {
            VtkMeshRead mesh;
            if (!reading.read(way, folder.path(series[step].second), mesh))
                GTEST_SKIP() << "VTK's reader for Python is not installed (on Debian python3-vtk9)";
            ASSERT_NO_FATAL_FAILURE(compareMesh(mesh));
            if (hasResults()) {
                ASSERT_NO_FATAL_FAILURE(compareStep(mesh, step));
            }
        }
    }

    void compareMesh(const VtkMeshRead& mesh) const {
        ASSERT_EQ(mesh.points, static_cast<std::size_t>(original->counts().num_nodes));
        ASSERT_EQ(mesh.cells, static_cast<std::size_t>(original->counts().num_elem));
        for (int axis = 0; axis < original->dimension(); ++axis)
            ASSERT_NO_FATAL_FAILURE(expectColumn(mesh.arrays.at("Points/Points"),
                                                 static_cast<std::size_t>(axis), 0,
                                                 original->coordinates(axis), "coordinates"));
        Numbers connectivity, offsets, types, parts;
        Names names;
        for (const auto& block : original->blocks()) {
            for (const auto node : original->connectivity(block))
                connectivity.push_back(static_cast<double>(node - 1));
            for (std::int64_t i = 0; i < block.elementCount; ++i) {
                offsets.push_back((offsets.empty() ? 0 : offsets.back()) +
                                  static_cast<double>(block.nodesPerElement));
                types.push_back(vtkCellOf(block.elementType));
                parts.push_back(static_cast<double>(names.size()));
            }
            names.push_back(block.name.empty() ? "Block " + std::to_string(block.id) : block.name);
        }
        EXPECT_EQ(mesh.numbers("Cells/connectivity"), connectivity);
        EXPECT_EQ(mesh.numbers("Cells/offsets"), offsets);
        EXPECT_EQ(mesh.numbers("Cells/types"), types);
        EXPECT_EQ(mesh.numbers("CellData/Part"), parts);
        EXPECT_EQ(mesh.texts("FieldData/Part Names"), names);
        EXPECT_EQ(mesh.numbers("PointData/Node Ids"),
                  doubles(original->idMap(EX_NODE_MAP, original->counts().num_nodes)));
        EXPECT_EQ(mesh.numbers("CellData/Element IDs"),
                  doubles(original->idMap(EX_ELEM_MAP, original->counts().num_elem)));
    }

    void compareStep(const VtkMeshRead& mesh, std::size_t step) {
        EXPECT_EQ(mesh.texts("FieldData/Step"), Names{"Step " + std::to_string(step + 1)});
        EXPECT_EQ(mesh.numbers("FieldData/TimeValue"), Numbers{original->times()[step]});
        std::set<std::string> nodal, elemental;
        for (const auto& [key, array] : mesh.arrays) {
            const auto name = key.substr(key.find('/') + 1);
            if (name == "Node Ids" || name == "Element IDs" || name == "Part")
                continue;
            const auto columns = array.columnNames.empty() ? Names{name} : array.columnNames;
            for (std::size_t column = 0; column < columns.size(); ++column) {
                if (key.starts_with("PointData/")) {
                    ASSERT_NO_FATAL_FAILURE(compareNodal(array, column, columns[column], step));
                    nodal.insert(columns[column]);
                } else if (key.starts_with("CellData/")) {
                    ASSERT_NO_FATAL_FAILURE(compareElemental(array, column, columns[column], step));
                    elemental.insert(columns[column]);
                }
            }
        }
        const auto nodalNames = original->variableNames(EX_NODAL);
        const auto elementalNames = original->variableNames(EX_ELEM_BLOCK);
        EXPECT_EQ(nodal, std::set<std::string>(nodalNames.begin(), nodalNames.end()));
        EXPECT_EQ(elemental, std::set<std::string>(elementalNames.begin(), elementalNames.end()));
    }

    void compareNodal(const VtkArrayRead& array, std::size_t column, const std::string& name,
                      std::size_t step) const {
        const auto names = original->variableNames(EX_NODAL);
        const auto place =
            static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
        expectColumn(array, column, 0,
                     original->values(EX_NODAL, place, 1, step, original->counts().num_nodes), name);
    }

    // Blocks without the variable have NaN, or their numbers of it stand in another array.
    void compareElemental(const VtkArrayRead& array, std::size_t column, const std::string& name,
                          std::size_t step) {
        const auto names = original->variableNames(EX_ELEM_BLOCK);
        const auto place =
            static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
        const auto table = original->elementTruthTable(names.size());
        for (std::size_t i = 0; i < original->blocks().size(); ++i) {
            const auto& block = original->blocks()[i];
            const auto first = static_cast<std::size_t>(block.firstElement);
            const bool isNan = std::isnan(array.numbers.at(first * array.columns + column));
            ASSERT_EQ(isNan, table[i * names.size() + place] == 0) << name;
            if (!isNan) {
                ASSERT_NO_FATAL_FAILURE(expectColumn(
                    array, column, first,
                    original->values(EX_ELEM_BLOCK, place, block.id, step, block.elementCount), name));
            }
        }
    }

    static Numbers doubles(const std::vector<std::int64_t>& ids) { return {ids.begin(), ids.end()}; }

    static void expectColumn(const VtkArrayRead& array, std::size_t column, std::size_t firstRow,
                             const Numbers& expected, const std::string& what) {
        ASSERT_LE((firstRow + expected.size()) * array.columns, array.numbers.size()) << what;
        for (std::size_t row = 0; row < expected.size(); ++row)
            ASSERT_EQ(array.numbers[(firstRow + row) * array.columns + column],
                      double{static_cast<float>(expected[row])})
                << what << " " << row;
    }

    TemporaryFolder folder;
    VtkReading reading;
    std::unique_ptr<MoxTool::ExodusFile> original;
    std::vector<std::pair<double, std::string>> series;
};

} // namespace

TEST_P(ExportVtkFiles, SeriesHasAllTimes) {
    Numbers times;
    for (const auto& [time, file] : series)
        times.push_back(time);
    EXPECT_EQ(times, hasResults() ? original->times() : Numbers{0});
}

TEST_P(ExportVtkFiles, NumbersAreThoseOfTheOriginal) {
    compareFiles("xml");
}

TEST_P(ExportVtkFiles, VtkReadsTheNumbersOfTheOriginal) {
    compareFiles("vtk");
}

INSTANTIATE_TEST_SUITE_P(Files, ExportVtkFiles, testing::ValuesIn(realExodusFiles()), nameOfRealFile);
