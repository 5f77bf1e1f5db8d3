// Imports every available Exodus file, reads the result back, and compares it number for number with what the
// Exodus library itself returns.

#include "../ImportRun.h"
#include "../ReadBack.h"
#include "Support/TemporaryFolder.h"

#include <exodusII.h>
#include <gtest/gtest.h>

#include <bit>
#include <cctype>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>

namespace {

namespace fs = std::filesystem;

const std::string DataFolder = MOXWRITER_DATA_DIR;

// One empty path if there are none, so that the tests can report it.
std::vector<std::string> exodusFiles() {
    const std::set<std::string> extensions = {".e", ".g", ".exo", ".ex2"};
    std::vector<std::string> paths;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(DataFolder, missing)) {
        if (extensions.contains(entry.path().extension().string())) {
            paths.push_back(entry.path().string());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths.empty() ? std::vector<std::string>{""} : paths;
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    auto name = info.param.empty() ? "none" : fs::path(info.param).filename().string();
    for (auto& letter : name) {
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) {
            letter = '_';
        }
    }
    return name;
}

struct Block {
    std::int64_t id;
    std::string name;
    std::string type;
    std::int64_t elements;
    std::int64_t nodesPerElement;
    std::int64_t firstElement;
};

void requireExodus(int status) {
    if (status != 0) {
        throw std::runtime_error("the Exodus library gave status " + std::to_string(status));
    }
}

std::size_t size(std::int64_t count) {
    return static_cast<std::size_t>(count);
}

// The Exodus side of the comparison.
class Original {
public:
    explicit Original(const std::string& path) {
        int memory = 8;
        int disk = 0;
        float version = 0;
        id = ex_open(path.c_str(), EX_READ | EX_ALL_INT64_API, &memory, &disk, &version);
        if (id < 0) {
            throw std::runtime_error("can't open " + path);
        }
        requireExodus(ex_get_init_ext(id, &counts));
        ex_set_max_name_length(id, 255);
    }
    Original(const Original&) = delete;
    Original& operator=(const Original&) = delete;
    ~Original() { ex_close(id); }

    std::vector<Block> blocks() const {
        std::vector<std::int64_t> ids(size(counts.num_elem_blk));
        requireExodus(ex_get_ids(id, EX_ELEM_BLOCK, ids.data()));
        std::vector<Block> result;
        std::int64_t first = 0;
        for (const auto blockId : ids) {
            char type[MAX_STR_LENGTH + 1] = {};
            char name[256] = {};
            std::int64_t sizes[5] = {};
            requireExodus(ex_get_block(id, EX_ELEM_BLOCK, blockId, type, &sizes[0], &sizes[1], &sizes[2],
                                       &sizes[3], &sizes[4]));
            requireExodus(ex_get_name(id, EX_ELEM_BLOCK, blockId, name));
            result.push_back({blockId, name, type, sizes[0], sizes[1], first});
            first += sizes[0];
        }
        return result;
    }

    std::vector<double> times() const {
        std::vector<double> result(size(ex_inquire_int(id, EX_INQ_TIME)));
        if (!result.empty()) {
            requireExodus(ex_get_all_times(id, result.data()));
        }
        return result;
    }

    std::vector<std::string> variables(ex_entity_type type) const {
        int count = 0;
        requireExodus(ex_get_variable_param(id, type, &count));
        std::vector<std::string> names;
        for (int i = 1; i <= count; ++i) {
            char name[256] = {};
            requireExodus(ex_get_variable_name(id, type, i, name));
            names.emplace_back(name);
        }
        return names;
    }

    bool hasVariable(std::int64_t block, int count, std::size_t variable) const {
        std::vector<int> row(static_cast<std::size_t>(count));
        requireExodus(ex_get_object_truth_vector(id, EX_ELEM_BLOCK, block, count, row.data()));
        return row[variable] != 0;
    }

    std::vector<double> values(ex_entity_type type, std::size_t variable, std::int64_t entity,
                               std::size_t step, std::int64_t count) const {
        std::vector<double> result(size(count));
        requireExodus(ex_get_var(id, static_cast<int>(step) + 1, type, static_cast<int>(variable) + 1, entity,
                                 count, result.data()));
        return result;
    }

    int id = -1;
    ex_init_params counts{};
};

void expectSame(float actual, double expected, const std::string& where) {
    ASSERT_EQ(std::bit_cast<std::uint32_t>(actual),
              std::bit_cast<std::uint32_t>(static_cast<float>(expected)))
        << where;
}

void expectColumn(const std::vector<float>& table, std::size_t width, std::size_t column,
                  const std::vector<double>& expected, const std::string& where) {
    ASSERT_EQ(table.size(), expected.size() * width) << where;
    for (std::size_t row = 0; row < expected.size(); ++row) {
        ASSERT_NO_FATAL_FAILURE(expectSame(table[row * width + column], expected[row], where));
    }
}

void expectIntegers(const std::vector<std::uint32_t>& actual, const std::int64_t* expected,
                    std::int64_t offset, const std::string& where) {
    for (std::size_t i = 0; i < actual.size(); ++i) {
        ASSERT_EQ(actual[i], expected[i] + offset) << where << " " << i;
    }
}

// The variable types of connectivity, by the element types that the files have.
std::uint32_t connectivityType(std::string type) {
    for (auto& letter : type) {
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    const std::map<std::string, std::uint32_t> types = {
        {"SPHERE", 4}, {"BAR2", 4}, {"TRI3", 5}, {"SHELL4", 5}, {"TET4", 6}, {"WEDGE6", 6}, {"HEX8", 6}};
    return types.at(type);
}

std::vector<std::string> componentsOf(const MoxReader::Attributes& attributes, const std::string& name) {
    std::vector<std::string> components;
    for (int i = 1; i <= 6; ++i) {
        const auto component = textOf(attributes, "Component " + std::to_string(i));
        if (!component.empty()) {
            components.push_back(component);
        }
    }
    return components.empty() ? std::vector<std::string>{name} : components;
}

class ImportRoundTrip : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        if (GetParam().empty()) {
            GTEST_SKIP() << "no Exodus files in " << DataFolder;
        }
        const auto output = folder.path("out.mox");
        const auto run = runImport({GetParam(), output});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        original = std::make_unique<Original>(GetParam());
        saved = std::make_unique<ReadBack>(output);
        blocks = original->blocks();
        geometries = saved->geometries();
        ASSERT_EQ(geometries.size(), blocks.size());
    }

    // Compares the results of one kind on one geometry; returns the variables that were found in each step.
    void compareResults(const MoxReader::Node& geometry, ex_entity_type type, std::int64_t entity,
                        std::int64_t rows, const std::set<std::uint32_t>& variableTypes,
                        std::multiset<std::string>& found) {
        const auto names = original->variables(type);
        for (const auto& dataset : geometry.geometry()->datasets) {
            if (dataset.step.empty() || !variableTypes.contains(dataset.variableType)) {
                continue;
            }
            const auto step = std::stoul(dataset.step.substr(5)) - 1;
            const auto width = saved->model().resolve(dataset).width;
            const auto numbers = saved->floats(dataset);
            const auto components = componentsOf(saved->attributes(dataset), dataset.name);
            for (std::size_t column = 0; column < components.size(); ++column) {
                const auto place = std::find(names.begin(), names.end(), components[column]) - names.begin();
                const auto expected =
                    original->values(type, static_cast<std::size_t>(place), entity, step, rows);
                ASSERT_NO_FATAL_FAILURE(expectColumn(numbers, width, column, expected, dataset.key));
                found.insert(dataset.step + " " + components[column]);
            }
        }
    }

    std::multiset<std::string> expectedResults(const std::vector<std::string>& variables) const {
        std::multiset<std::string> expected;
        for (std::size_t step = 1; step <= original->times().size(); ++step) {
            for (const auto& variable : variables) {
                expected.insert("Step " + std::to_string(step) + " " + variable);
            }
        }
        return expected;
    }

    Support::TemporaryFolder folder;
    std::unique_ptr<Original> original;
    std::unique_ptr<ReadBack> saved;
    std::vector<Block> blocks;
    std::vector<const MoxReader::Node*> geometries;
};

} // namespace

TEST_P(ImportRoundTrip, TreeHasOneRootGroupAndOneShapeForEachBlock) {
    const auto& root = saved->model().root();
    const std::string title = original->counts.title;
    EXPECT_EQ(root.name, title.empty() ? fs::path(GetParam()).stem().string() : title);
    ASSERT_NE(root.group(), nullptr);
    EXPECT_EQ(textOf(root.group()->attributes, "Source File"), fs::path(GetParam()).filename().string());
    EXPECT_EQ(integerOf(root.group()->attributes, "Nodes"), original->counts.num_nodes);
    EXPECT_EQ(integerOf(root.group()->attributes, "Elements"), original->counts.num_elem);

    const auto shapes = saved->model().children(root.id);
    ASSERT_EQ(shapes.size(), blocks.size());
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        const auto& shape = saved->model().node(shapes[i]);
        ASSERT_NE(shape.shape(), nullptr);
        EXPECT_EQ(shape.name,
                  blocks[i].name.empty() ? "Block " + std::to_string(blocks[i].id) : blocks[i].name);
        EXPECT_EQ(geometries[i]->parent, shape.id);
    }
}

TEST_P(ImportRoundTrip, EveryShapeHasAColourOfItsOwn) {
    std::set<std::array<float, 4>> colours;
    for (const auto& node : saved->model().nodes()) {
        if (node.shape() != nullptr) {
            colours.insert(node.shape()->material.diffuse);
        }
    }
    EXPECT_EQ(colours.size(), blocks.size());
}

TEST_P(ImportRoundTrip, CoordinatesAreThoseOfTheFileAndStandThereOnce) {
    const auto count = size(original->counts.num_nodes);
    std::vector<double> axes[3] = {std::vector<double>(count), std::vector<double>(count),
                                   std::vector<double>(count)};
    requireExodus(ex_get_coord(original->id, axes[0].data(), axes[1].data(), axes[2].data()));
    std::set<std::uint32_t> holders;
    for (const auto* geometry : geometries) {
        const auto& dataset = ReadBack::dataset(*geometry, "Coordinates");
        EXPECT_EQ(dataset.variableType, 1U);
        const auto numbers = saved->floats(dataset);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            ASSERT_NO_FATAL_FAILURE(
                expectColumn(numbers, 3, axis, axes[axis], "axis " + std::to_string(axis)));
        }
        holders.insert(saved->model().resolve(dataset).nodeId);
    }
    EXPECT_EQ(holders.size(), 1U);
}

TEST_P(ImportRoundTrip, NodeIdsAreThoseOfTheFile) {
    std::vector<std::int64_t> ids(size(original->counts.num_nodes));
    requireExodus(ex_get_id_map(original->id, EX_NODE_MAP, ids.data()));
    for (const auto* geometry : geometries) {
        const auto numbers = saved->integers(ReadBack::dataset(*geometry, "Node Ids"));
        ASSERT_EQ(numbers.size(), ids.size());
        ASSERT_NO_FATAL_FAILURE(expectIntegers(numbers, ids.data(), 0, "Node Ids"));
    }
}

TEST_P(ImportRoundTrip, ElementIdsAreThoseOfTheFile) {
    std::vector<std::int64_t> ids(size(original->counts.num_elem));
    requireExodus(ex_get_id_map(original->id, EX_ELEM_MAP, ids.data()));
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto numbers = saved->integers(ReadBack::dataset(*geometries[i], "Element IDs"));
        ASSERT_EQ(numbers.size(), size(blocks[i].elements));
        ASSERT_NO_FATAL_FAILURE(
            expectIntegers(numbers, ids.data() + blocks[i].firstElement, 0, blocks[i].name));
    }
}

TEST_P(ImportRoundTrip, ElementsHaveTheirNodes) {
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const auto& block = blocks[i];
        std::vector<std::int64_t> nodes(size(block.elements * block.nodesPerElement));
        requireExodus(ex_get_conn(original->id, EX_ELEM_BLOCK, block.id, nodes.data(), nullptr, nullptr));
        const auto& dataset = ReadBack::dataset(*geometries[i], "Connectivity");
        EXPECT_EQ(dataset.variableType, connectivityType(block.type));
        const auto numbers = saved->integers(dataset);
        ASSERT_EQ(numbers.size(), nodes.size());
        ASSERT_NO_FATAL_FAILURE(expectIntegers(numbers, nodes.data(), -1, block.name));
        EXPECT_EQ(integerOf(dataset.attributes, "Block Id"), block.id);
        EXPECT_EQ(textOf(dataset.attributes, "Element Type"), block.type);

        const auto& lengths = ReadBack::dataset(*geometries[i], "Polylength");
        EXPECT_EQ(lengths.variableType, 9U);
        EXPECT_EQ(saved->integers(lengths),
                  std::vector<std::uint32_t>(size(block.elements),
                                             static_cast<std::uint32_t>(block.nodesPerElement)));
    }
}

TEST_P(ImportRoundTrip, EveryNodalVariableIsThereOnceInEveryStep) {
    const std::set<std::uint32_t> nodal = {13, 14, 12};
    const auto expected = expectedResults(original->variables(EX_NODAL));
    for (const auto* geometry : geometries) {
        std::multiset<std::string> found;
        ASSERT_NO_FATAL_FAILURE(
            compareResults(*geometry, EX_NODAL, 1, original->counts.num_nodes, nodal, found));
        EXPECT_EQ(found, expected);
    }
}

TEST_P(ImportRoundTrip, EveryElementVariableIsThereOnceOnTheBlocksThatHaveIt) {
    const std::set<std::uint32_t> elemental = {16, 17, 18};
    const auto variables = original->variables(EX_ELEM_BLOCK);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        std::vector<std::string> present;
        for (std::size_t variable = 0; variable < variables.size(); ++variable) {
            if (original->hasVariable(blocks[i].id, static_cast<int>(variables.size()), variable)) {
                present.push_back(variables[variable]);
            }
        }
        std::multiset<std::string> found;
        ASSERT_NO_FATAL_FAILURE(compareResults(*geometries[i], EX_ELEM_BLOCK, blocks[i].id,
                                               blocks[i].elements, elemental, found));
        EXPECT_EQ(found, expectedResults(present));
    }
}

TEST_P(ImportRoundTrip, StepsKeepTheirTimesToTheLastDigit) {
    const auto times = original->times();
    std::set<std::string> seen;
    for (const auto* geometry : geometries) {
        for (const auto& dataset : geometry->geometry()->datasets) {
            if (dataset.step.empty()) {
                continue;
            }
            const auto step = std::stoul(dataset.step.substr(5)) - 1;
            ASSERT_LT(step, times.size());
            const auto& attributes = saved->attributes(dataset);
            EXPECT_EQ(std::strtod(textOf(attributes, "Time (exact)").c_str(), nullptr), times[step]);
            EXPECT_EQ(std::get<float>(attributes.at("Time")), static_cast<float>(times[step]));
            seen.insert(dataset.step);
        }
    }
    const bool hasResults =
        !original->variables(EX_NODAL).empty() || !original->variables(EX_ELEM_BLOCK).empty();
    EXPECT_EQ(seen.size(), hasResults ? times.size() : 0U);
}

INSTANTIATE_TEST_SUITE_P(Files, ImportRoundTrip, testing::ValuesIn(exodusFiles()), testName);

namespace {

// One real file, imported; skips the test if it is not available.
class ImportedFile : public testing::Test {
protected:
    void import(const std::string& name) {
        const auto path = (fs::path(DataFolder) / name).string();
        if (!fs::exists(path)) {
            GTEST_SKIP() << path << " is not there";
        }
        run = runImport({path, folder.path("out.mox")});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        saved = std::make_unique<ReadBack>(folder.path("out.mox"));
    }

    // Name and variable type of each dataset of one step.
    std::map<std::string, std::uint32_t> results(std::size_t geometry, const std::string& step) const {
        std::map<std::string, std::uint32_t> found;
        for (const auto& dataset : saved->geometries().at(geometry)->geometry()->datasets) {
            if (dataset.step == step) {
                found[dataset.name] = dataset.variableType;
            }
        }
        return found;
    }

    std::vector<std::string> components(const std::string& name, const std::string& step,
                                        std::size_t geometry = 0) const {
        const auto& dataset = ReadBack::dataset(*saved->geometries().at(geometry), name, step);
        return componentsOf(saved->attributes(dataset), name);
    }

    Support::TemporaryFolder folder;
    MoxRun run{};
    std::unique_ptr<ReadBack> saved;
};

using Results = std::map<std::string, std::uint32_t>;
using Components = std::vector<std::string>;

} // namespace

TEST_F(ImportedFile, EightBlocksHaveGatheredResults) {
    import("8-block.g");
    if (IsSkipped()) {
        return;
    }
    EXPECT_EQ(results(7, "Step 11"), (Results{{"Displacement", 13},
                                              {"accel", 13},
                                              {"force", 13},
                                              {"vel", 13},
                                              {"eqps", 16},
                                              {"mises", 16},
                                              {"pressure", 16},
                                              {"sigma", 18}}));
    EXPECT_EQ(components("Displacement", "Step 1"), (Components{"disp_X", "disp_Y", "disp_Z"}));
    EXPECT_EQ(components("sigma", "Step 1"),
              (Components{"sigma_XX", "sigma_YY", "sigma_ZZ", "sigma_XY", "sigma_YZ", "sigma_ZX"}));
    EXPECT_EQ(saved->model().root().name, "8-block");
    EXPECT_TRUE(run.says("not taken: information records: 75"));
}

TEST_F(ImportedFile, ModeShapesAreMarkedAndHaveSixColumns) {
    import("mode_solid_shell_bar.exo");
    if (IsSkipped()) {
        return;
    }
    EXPECT_EQ(results(0, "Step 2"), (Results{{"Displacement", 14}}));
    EXPECT_EQ(components("Displacement", "Step 2"),
              (Components{"DispX", "DispY", "DispZ", "RotX", "RotY", "RotZ"}));
    const auto& dataset = ReadBack::dataset(*saved->geometries().front(), "Displacement", "Step 2");
    EXPECT_TRUE(dataset.vibration);
    EXPECT_EQ(integerOf(dataset.attributes, "Mode"), 2U);
    EXPECT_EQ(textOf(dataset.attributes, "Frequency (exact)"), "75.95746");
    EXPECT_FALSE(run.says("global variables"));
}

TEST_F(ImportedFile, IncompleteTensorsStaySingle) {
    import("seismic_force_test_z_out.e");
    if (IsSkipped()) {
        return;
    }
    EXPECT_EQ(results(0, "Step 27"), (Results{{"accel", 13},
                                              {"Displacement", 13},
                                              {"vel", 13},
                                              {"layer_id", 16},
                                              {"strain_zx", 16},
                                              {"stress_zx", 16}}));
    EXPECT_FALSE(ReadBack::dataset(*saved->geometries().front(), "vel", "Step 1").vibration);
}

TEST_F(ImportedFile, IntegrationPointsHaveDatasetsOfTheirOwn) {
    import("exomerge_unit_test.e");
    if (IsSkipped()) {
        return;
    }
    const auto second = results(1, "Step 5");
    EXPECT_EQ(second.at("Displacement"), 13U);
    EXPECT_EQ(second.at("residual"), 13U);
    EXPECT_EQ(second.at("mass"), 12U);
    EXPECT_EQ(second.at("stress"), 18U);
    EXPECT_EQ(second.at("unrotated_stress_1"), 18U);
    EXPECT_EQ(second.at("unrotated_stress_8"), 18U);
    EXPECT_FALSE(second.contains("unrotated_stress_9"));
    EXPECT_EQ(components("unrotated_stress_3", "Step 5", 1),
              (Components{"unrotated_stress_xx_3", "unrotated_stress_yy_3", "unrotated_stress_zz_3",
                          "unrotated_stress_xy_3", "unrotated_stress_yz_3", "unrotated_stress_zx_3"}));
    const auto first = results(0, "Step 5");
    EXPECT_EQ(first.at("unrotated_stress"), 18U);
    EXPECT_FALSE(first.contains("unrotated_stress_1"));
}

TEST_F(ImportedFile, WhatIsNotTakenIsCountedAndNamed) {
    import("exomerge_unit_test.e");
    if (IsSkipped()) {
        return;
    }
    EXPECT_TRUE(run.says("not taken: side sets: 8 (surface_1, surface_2, "));
    EXPECT_TRUE(run.says("not taken: node sets: 12 (surface_1_n, "));
    EXPECT_TRUE(run.says("not taken: node set variables: 1 (normal_pressure)"));
    EXPECT_TRUE(run.says("not taken: global variables: 8 (external_energy, "));
    EXPECT_TRUE(run.says("note: double precision: "));
}

TEST_F(ImportedFile, ProgramOfTheFirstQaRecordIsTheSource) {
    import("exomerge_unit_test.e");
    if (IsSkipped()) {
        return;
    }
    const auto& attributes = saved->model().root().group()->attributes;
    EXPECT_EQ(textOf(attributes, "Source Program"), "SolidMechanics");
    EXPECT_EQ(textOf(attributes, "Source Version"), "4.25.7-189-gaf97c7f3");
    EXPECT_EQ(textOf(attributes, "Source Date"), "2012/07/24");
    EXPECT_EQ(textOf(attributes, "Source Time"), "15:23:56");
    EXPECT_EQ(textOf(attributes, "QA Record 2"), "epu --  E Pluribus Unum, 3.37, 2012/07/24, 15:30:31");
}

TEST_F(ImportedFile, AssembliesAreToldThoughTheLibraryDoesNotKnowThem) {
    import("test-assembly.exo");
    if (IsSkipped()) {
        return;
    }
    EXPECT_EQ(saved->geometries().size(), 7U);
    EXPECT_TRUE(run.says("not taken: assemblies: 6 (Root, Child2, Child3, Child4, NewAssembly, FromPython)"));
    EXPECT_TRUE(run.says("Momentum_X, Momentum_Y, Momentum_Z, Kinetic_Energy"));
    EXPECT_TRUE(run.says("Units of block_11, Scale of Root"));
    EXPECT_TRUE(run.says("not taken: attributes of the file: 1 (SOLID_MODEL)"));
}
