// What the available real files don't have: planes, polygons, empty blocks, large ids, colliding names.

#include "../../exodus/SmallExodusFile.h"
#include "../ImportRun.h"
#include "../ReadBack.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <netcdf.h>

#include <memory>

namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::uint32_t>;

class ImportSmallModels : public testing::Test {
protected:
    std::string model() const { return folder.path("model.e"); }

    void expectRefused(const std::string& reason) {
        run = runImport({model(), folder.path("out.mox")});
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.messages, "mox import: " + model() + ": " + reason + "\n");
        EXPECT_EQ(folder.files(), std::vector<std::string>{"model.e"});
    }
    void import() {
        run = runImport({model(), folder.path("out.mox")});
        ASSERT_EQ(run.exitCode, 0) << run.messages;
        saved = std::make_unique<ReadBack>(folder.path("out.mox"));
    }

    // The geometry at a place, counted from 0.
    const MoxReader::Node& geometry(std::size_t place) const { return *saved->geometries().at(place); }
    Floats floats(std::size_t place, const std::string& name, const std::string& step = "") const {
        return saved->floats(ReadBack::dataset(geometry(place), name, step));
    }
    Integers integers(std::size_t place, const std::string& name) const {
        return saved->integers(ReadBack::dataset(geometry(place), name));
    }

    Support::TemporaryFolder folder;
    MoxRun run{};
    std::unique_ptr<ReadBack> saved;
};

// Changes a file through netCDF, which does what the Exodus library refuses to do.
class RawExodusFile {
public:
    explicit RawExodusFile(const std::string& path) {
        SmallExodusFile::require(nc_open(path.c_str(), NC_WRITE, &id_));
        SmallExodusFile::require(nc_redef(id_));
    }
    RawExodusFile(const RawExodusFile&) = delete;
    RawExodusFile& operator=(const RawExodusFile&) = delete;
    ~RawExodusFile() { nc_close(id_); }

    void setText(const std::string& variable, const std::string& attribute, const std::string& text) const {
        const auto owner = variable.empty() ? NC_GLOBAL : find(variable);
        SmallExodusFile::require(nc_put_att_text(id_, owner, attribute.c_str(), text.size(), text.data()));
    }
    void setNumbers(const std::string& variable, const std::vector<int>& numbers) const {
        SmallExodusFile::require(nc_enddef(id_));
        SmallExodusFile::require(nc_put_var_int(id_, find(variable), numbers.data()));
    }

private:
    int find(const std::string& variable) const {
        int found = 0;
        SmallExodusFile::require(nc_inq_varid(id_, variable.c_str(), &found));
        return found;
    }

    int id_ = -1;
};

// One triangle in the plane.
void addTriangle(SmallExodusFile& file) {
    file.coordinates({0, 1, 0}, {0, 0, 2});
    file.block(1, "TRI3", 1, 3, {1, 2, 3});
}

} // namespace

TEST_F(ImportSmallModels, PlaneModelGetsAThirdColumnOfZeros) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
        file.variables(EX_NODAL, {"disp_x", "disp_y"});
        file.time(1, 0.5);
        file.values(1, EX_NODAL, 1, 1, {1, 2, 3});
        file.values(1, EX_NODAL, 2, 1, {4, 5, 6});
    }
    import();
    EXPECT_EQ(floats(0, "Coordinates"), (Floats{0, 0, 0, 1, 0, 0, 0, 2, 0}));
    EXPECT_EQ(floats(0, "Displacement", "Step 1"), (Floats{1, 4, 0, 2, 5, 0, 3, 6, 0}));
}

TEST_F(ImportSmallModels, LineModelGetsTwoColumnsOfZeros) {
    {
        SmallExodusFile file(model(), {1, 2, 1, 1});
        file.coordinates({3, 4});
        file.block(1, "BAR", 1, 2, {1, 2});
    }
    import();
    EXPECT_EQ(floats(0, "Coordinates"), (Floats{3, 0, 0, 4, 0, 0}));
    EXPECT_EQ(ReadBack::dataset(geometry(0), "Connectivity").variableType, 4U);
}

TEST_F(ImportSmallModels, PolygonsHaveTheirOwnNumbersOfNodes) {
    {
        SmallExodusFile file(model(), {2, 5, 2, 1});
        file.coordinates({0, 1, 1, 0, 2}, {0, 0, 1, 1, 0});
        file.block(9, "NSIDED", 2, 7, {1, 2, 3, 4, 2, 5, 3});
        const std::vector<int> counts = {4, 3};
        SmallExodusFile::require(
            ex_put_entity_count_per_polyhedra(file.handle(), EX_ELEM_BLOCK, 9, counts.data()));
    }
    import();
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0, 1, 2, 3, 1, 4, 2}));
    EXPECT_EQ(integers(0, "Polylength"), (Integers{4, 3}));
    EXPECT_EQ(ReadBack::dataset(geometry(0), "Connectivity").variableType, 5U);
}

TEST_F(ImportSmallModels, BlocksThatCanNotBeTakenAreToldAndKeepTheIdsOfTheOthersRight) {
    {
        SmallExodusFile file(model(), {2, 3, 3, 3});
        file.coordinates({0, 1, 0}, {0, 0, 2});
        file.block(1, "SUPER", 1, 2, {1, 2});
        file.block(2, "QUAD4", 0, 4, {});
        file.block(3, "TRI3", 2, 3, {1, 2, 3, 3, 2, 1});
        const std::vector<int> ids = {30, 10, 20};
        SmallExodusFile::require(ex_put_id_map(file.handle(), EX_ELEM_MAP, ids.data()));
    }
    import();
    ASSERT_EQ(saved->geometries().size(), 1U);
    EXPECT_EQ(geometry(0).name, "Block 3");
    EXPECT_EQ(integers(0, "Element IDs"), (Integers{10, 20}));
    EXPECT_TRUE(run.says("not taken: empty element blocks: 1 (Block 2)"));
    EXPECT_TRUE(run.says("not taken: element blocks of other types: 1 (Block 1: 1 elements of type SUPER)"));
}

TEST_F(ImportSmallModels, NodesWithoutElementsAreTold) {
    {
        SmallExodusFile file(model(), {2, 3, 0, 0});
        file.coordinates({0, 1, 0}, {0, 0, 2});
    }
    import();
    EXPECT_EQ(saved->model().nodes().size(), 1U);
    EXPECT_TRUE(run.says("not taken: nodes, since there is no element block to hold them: 3"));
}

TEST_F(ImportSmallModels, ElementAttributesAreTold) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        file.coordinates({0, 1, 0}, {0, 0, 2});
        file.block(1, "TRI3", 1, 3, {1, 2, 3}, 1);
        const double thickness = 0.1;
        char name[] = "thickness";
        char* names[] = {name};
        SmallExodusFile::require(ex_put_attr_names(file.handle(), EX_ELEM_BLOCK, 1, names));
        SmallExodusFile::require(ex_put_attr(file.handle(), EX_ELEM_BLOCK, 1, &thickness));
    }
    import();
    EXPECT_TRUE(run.says("not taken: element attributes: 1 (thickness of Block 1)"));
}

TEST_F(ImportSmallModels, FileOfFloatsLosesNothing) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1}, EX_CLOBBER, 4);
        file.coordinates({0.1, 1.1, 0}, {0, 0, 2.3});
        file.block(1, "TRI3", 1, 3, {1, 2, 3});
    }
    import();
    EXPECT_EQ(floats(0, "Coordinates"), (Floats{0.1F, 0, 0, 1.1F, 0, 0, 0, 2.3F, 0}));
    EXPECT_FALSE(run.says("note:"));
}

TEST_F(ImportSmallModels, ResultsOfOneNameAreKeptApart) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
        file.variables(EX_NODAL, {"t"});
        file.variables(EX_ELEM_BLOCK, {"t"});
        file.time(1, 0);
        file.values(1, EX_NODAL, 1, 1, {1, 2, 3});
        file.values(1, EX_ELEM_BLOCK, 1, 1, {4});
    }
    import();
    EXPECT_EQ(floats(0, "t", "Step 1"), (Floats{1, 2, 3}));
    EXPECT_EQ(floats(0, "t (2)", "Step 1"), (Floats{4}));
    EXPECT_TRUE(run.says("note: \"t\" is named \"t (2)\", since another dataset has its name"));
}

TEST_F(ImportSmallModels, VariablesWithoutStepsAreTold) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
        file.variables(EX_NODAL, {"t"});
    }
    import();
    EXPECT_TRUE(run.says("not taken: nodal variables, since there are no element blocks or no steps: 1 (t)"));
}

TEST_F(ImportSmallModels, IdBeyond32BitsIsRefusedInOneLine) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1},
                             EX_CLOBBER | EX_NETCDF4 | EX_ALL_INT64_DB | EX_MAPS_INT64_API);
        addTriangle(file);
        const std::vector<std::int64_t> ids = {1, 2, 5000000000};
        SmallExodusFile::require(ex_put_id_map(file.handle(), EX_NODE_MAP, ids.data()));
    }
    run = runImport({model(), folder.path("out.mox")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + model() +
                                ": has the id 5000000000, but a model keeps ids from 0 to 4294967295\n");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"model.e"});
}

TEST_F(ImportSmallModels, ElementOfANodeThatIsNotThereIsRefused) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        file.coordinates({0, 1, 0}, {0, 0, 2});
        file.block(1, "TRI3", 1, 3, {1, 2, 4});
    }
    run = runImport({model(), folder.path("out.mox")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.messages, "mox import: " + model() + ": damaged: Block 1 refers to node 4 of 3\n");
    EXPECT_EQ(folder.files(), std::vector<std::string>{"model.e"});
}

TEST_F(ImportSmallModels, VersionOfTheWritingLibraryIsKept) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
    }
    {
        const float version = 4.98F;
        int file = 0;
        SmallExodusFile::require(nc_open(model().c_str(), NC_WRITE, &file));
        SmallExodusFile::require(nc_put_att_float(file, NC_GLOBAL, "api_version", NC_FLOAT, 1, &version));
        nc_close(file);
    }
    import();
    EXPECT_EQ(textOf(saved->model().root().group()->attributes, "Exodus API Version"), "4.98");
}

TEST_F(ImportSmallModels, TwoBlocksOfOneIdAreRefusedByTheirPlacesAndNames) {
    {
        SmallExodusFile file(model(), {2, 3, 3, 3});
        file.coordinates({0, 1, 0}, {0, 0, 2});
        for (const int id : {3, 4, 5}) {
            file.block(id, "TRI3", 1, 3, {1, 2, 3});
        }
        SmallExodusFile::require(ex_put_name(file.handle(), EX_ELEM_BLOCK, 5, "right\x1B"));
    }
    RawExodusFile(model()).setNumbers("eb_prop1", {7, 4, 7});
    expectRefused("damaged: element block 1 and element block 3 \"right\\x1B\" have the same id, 7");
}

TEST_F(ImportSmallModels, TimesAreKeptIfNoBlockHasTheVariables) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
        file.variables(EX_ELEM_BLOCK, {"p"});
        int nowhere = 0;
        SmallExodusFile::require(ex_put_truth_table(file.handle(), EX_ELEM_BLOCK, 1, 1, &nowhere));
        file.time(1, 0.5);
        file.time(2, 0.75);
    }
    import();
    const auto& attributes = saved->model().root().group()->attributes;
    EXPECT_EQ(textOf(attributes, "Time of Step 1"), "0.5");
    EXPECT_EQ(textOf(attributes, "Time of Step 2"), "0.75");
    EXPECT_TRUE(run.says("not taken: element variables that no block has: 1 (p)"));
    EXPECT_TRUE(run.says("steps: 0, datasets: 5")) << run.messages;
    EXPECT_TRUE(run.says("note: the steps have no results; their times are attributes of the root\n"));
    const auto back = runMox({"export", folder.path("out.mox"), folder.path("back.e")});
    EXPECT_TRUE(back.says("steps: 2, datasets: 0")) << back.messages;
}

TEST_F(ImportSmallModels, TimesAreKeptIfNoBlockCanTakeTheNodesResults) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        file.coordinates({0, 1, 0}, {0, 0, 2});
        file.block(1, "SUPER", 1, 2, {1, 2});
        file.variables(EX_NODAL, {"t"});
        file.time(1, 0.5);
        file.values(1, EX_NODAL, 1, 1, {1, 2, 3});
    }
    import();
    EXPECT_EQ(textOf(saved->model().root().group()->attributes, "Time of Step 1"), "0.5");
}

TEST_F(ImportSmallModels, SeparatorOfKeysInANameIsReplacedAndSoSaid) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
        file.variables(EX_NODAL, {"a\x1E"
                                  "b"});
        for (const int step : {1, 2}) {
            file.time(step, step);
            file.values(step, EX_NODAL, 1, 1, {1.0 * step, 2, 3});
        }
    }
    import();
    EXPECT_EQ(floats(0, "a_b", "Step 2"), (Floats{2, 2, 3}));
    EXPECT_EQ(textOf(saved->attributes(ReadBack::dataset(geometry(0), "a_b", "Step 1")), "Component 1"),
              "a\x1E"
              "b");
    EXPECT_TRUE(run.says("note: \"a\\x1Eb\" is named \"a_b\", since the byte 0x1E ends a name\n"))
        << run.messages;
}

TEST_F(ImportSmallModels, ElementTypesThatAreTooLongForTheLibraryAreRefused) {
    for (const std::size_t length : {std::size_t{36}, std::size_t{1000}}) {
        {
            SmallExodusFile file(model(), {2, 3, 1, 1});
            addTriangle(file);
        }
        RawExodusFile(model()).setText("connect1", "elem_type", std::string(length, 'T'));
        expectRefused("damaged: element block 1 has an element type of " + std::to_string(length) +
                      " letters, but Exodus II allows 32");
    }
}

TEST_F(ImportSmallModels, TitleThatIsTooLongForTheLibraryDoesNoHarm) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
    }
    RawExodusFile(model()).setText("", "title", std::string(1000, 'T'));
    run = runImport({model(), folder.path("out.mox")});
    EXPECT_EQ(run.exitCode, 0) << run.messages;
}

TEST_F(ImportSmallModels, NamesOfWhatIsNotTakenAreShownWithoutControlCharacters) {
    {
        SmallExodusFile file(model(), {2, 3, 1, 1});
        addTriangle(file);
        file.variables(EX_GLOBAL, {"energy\x1B[31m"});
    }
    import();
    EXPECT_TRUE(run.says("not taken: global variables: 1 (energy\\x1B[31m)\n")) << run.messages;
}
