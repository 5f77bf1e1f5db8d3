// What the available real files don't have: planes, polygons, empty blocks, large ids, colliding names.

#include "../../exodus/SmallExodusFile.h"
#include "../ImportRun.h"
#include "../ReadBack.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using Floats = std::vector<float>;
using Integers = std::vector<std::uint32_t>;

class ImportSmallModels : public testing::Test {
protected:
    std::string model() const { return folder.path("model.e"); }

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
