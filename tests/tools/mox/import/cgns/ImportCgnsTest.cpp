#include "../ImportedModel.h"
#include "SmallCgnsFile.h"

#include <hdf5.h>

#include <bit>
#include <filesystem>
#include <fstream>

namespace {

const std::string RealFile = std::string(MOXWRITER_DATA_DIR) + "/BC_without_parents.cgns";

class ImportCgns : public ImportedModel {
protected:
    std::string input() const { return folder.path("model.cgns"); }
    void import() { ImportedModel::import(input()); }
};

class ImportRealCgns : public ImportedModel {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(RealFile)) {
            GTEST_SKIP() << "there is no " << RealFile;
        }
    }
};

// The library's own view of a section with elements of one type.
std::vector<cgsize_t> elementsOf(int file, int section, std::string& name, cgsize_t& first, cgsize_t& last) {
    char buffer[33] = {};
    auto type = CGNS_ENUMV(ElementTypeNull);
    int boundary = 0;
    int parents = 0;
    cgsize_t size = 0;
    SmallCgnsFile::require(
        cg_section_read(file, 1, 1, section, buffer, &type, &first, &last, &boundary, &parents));
    SmallCgnsFile::require(cg_ElementDataSize(file, 1, 1, section, &size));
    std::vector<cgsize_t> nodes(static_cast<std::size_t>(size));
    SmallCgnsFile::require(cg_elements_read(file, 1, 1, section, nodes.data(), nullptr));
    name = buffer;
    return nodes;
}

} // namespace

TEST_F(ImportRealCgns, TreeHasTheBaseTheZoneAndItsSections) {
    import(RealFile);
    EXPECT_EQ(root().name, "Base");
    EXPECT_EQ(textOf(root().group()->attributes, "Source File"), "BC_without_parents.cgns");
    ASSERT_EQ(namesBelow(root()), Names{"blk-1"});
    EXPECT_EQ(namesBelow(child(root(), 0)),
              (Names{"HexElements", "bc-1-wall", "bc-2-inflow", "bc-3-outflow"}));
    EXPECT_TRUE(run.says("shapes: 4, nodes: 4505, elements: 5088, steps: 0, datasets: 14"));
}

TEST_F(ImportRealCgns, CoordinatesAreThoseOfTheFileAndStandThereOnce) {
    import(RealFile);
    int file = 0;
    SmallCgnsFile::require(cg_open(RealFile.c_str(), CG_MODE_READ, &file));
    const auto numbers = floats(0, "Coordinates");
    ASSERT_EQ(numbers.size(), 3U * 4505U);
    const char* names[] = {"CoordinateX", "CoordinateY", "CoordinateZ"};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const cgsize_t first = 1;
        const cgsize_t last = 4505;
        std::vector<double> expected(4505);
        SmallCgnsFile::require(
            cg_coord_read(file, 1, 1, names[axis], CGNS_ENUMV(RealDouble), &first, &last, expected.data()));
        for (std::size_t vertex = 0; vertex < expected.size(); ++vertex) {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(numbers[3 * vertex + axis]),
                      std::bit_cast<std::uint32_t>(static_cast<float>(expected[vertex])));
        }
    }
    cg_close(file);
    for (std::size_t shape = 1; shape < 4; ++shape) {
        EXPECT_EQ(holder(shape, "Coordinates"), holder(0, "Coordinates"));
        EXPECT_EQ(holder(shape, "Node Ids"), holder(0, "Node Ids"));
    }
    const auto ids = integers(0, "Node Ids");
    ASSERT_EQ(ids.size(), 4505U);
    EXPECT_EQ(ids.front(), 1U);
    EXPECT_EQ(ids.back(), 4505U);
}

TEST_F(ImportRealCgns, ElementsHaveTheirNodesAndNumbers) {
    import(RealFile);
    int file = 0;
    SmallCgnsFile::require(cg_open(RealFile.c_str(), CG_MODE_READ, &file));
    for (std::size_t place = 0; place < 4; ++place) {
        std::string name;
        cgsize_t first = 0;
        cgsize_t last = 0;
        const auto nodes = elementsOf(file, static_cast<int>(place) + 1, name, first, last);
        EXPECT_EQ(geometry(place).name, name);
        EXPECT_EQ(dataset(place, "Connectivity").variableType, place == 0 ? 6U : 5U);
        const auto imported = integers(place, "Connectivity");
        ASSERT_EQ(imported.size(), nodes.size());
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            ASSERT_EQ(imported[i] + 1, static_cast<std::uint32_t>(nodes[i]));
        }
        const auto count = static_cast<std::size_t>(last - first + 1);
        EXPECT_EQ(integers(place, "Polylength"), Integers(count, place == 0 ? 8 : 4));
        const auto ids = integers(place, "Element IDs");
        ASSERT_EQ(ids.size(), count);
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(ids[i], static_cast<std::uint32_t>(first) + i);
        }
    }
    cg_close(file);
}

TEST_F(ImportRealCgns, FamiliesAndBoundaryConditionsAreTold) {
    import(RealFile);
    EXPECT_TRUE(run.says("not taken: families: 4 (vc-1, bc-1-wall, bc-2-inflow, bc-3-outflow)"))
        << run.messages;
    EXPECT_TRUE(run.says("not taken: boundary conditions: 3 (bc-1-wall, bc-2-inflow, bc-3-outflow)"))
        << run.messages;
}

TEST_F(ImportRealCgns, FileCutOffAnywhereIsRefused) {
    std::ifstream file(RealFile, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    for (const std::size_t size :
         {whole.size() / 100, whole.size() / 4, whole.size() / 2, whole.size() - 1}) {
        expectRefused(folder.write("cut.cgns", whole.substr(0, size)), "no CGNS file, or damaged (");
    }
}

TEST_F(ImportCgns, IsRecognisedWhateverItsName) {
    {
        SmallCgnsFile file(folder.path("model.e"));
        file.addZone("Zone", 2, 1);
        file.lineOfVertices(2);
        file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
    }
    ImportedModel::import(folder.path("model.e"));
    EXPECT_EQ(root().name, "Base");
    EXPECT_EQ(dataset(0, "Connectivity").variableType, 4U);
}

TEST_F(ImportCgns, FileThatTheLibraryKeepsInAdfIsTaken) {
    SmallCgnsFile::require(cg_set_file_type(CG_FILE_ADF));
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 2, 1);
        file.lineOfVertices(2);
        file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
    }
    SmallCgnsFile::require(cg_set_file_type(CG_FILE_HDF5));
    import();
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0, 1}));
}

TEST_F(ImportCgns, MixedSectionIsSplitByElementType) {
    {
        SmallCgnsFile file(input(), 2);
        file.addZone("Zone", 7, 3);
        file.lineOfVertices(7);
        file.sectionWithOffsets(
            "Skin", CGNS_ENUMV(MIXED), 1, 3,
            {CGNS_ENUMV(TRI_3), 1, 2, 3, CGNS_ENUMV(QUAD_4), 4, 5, 6, 7, CGNS_ENUMV(TRI_3), 5, 6, 7},
            {0, 4, 9, 13});
        file.solution("Centres", CGNS_ENUMV(CellCenter));
        file.field("Pressure", {10, 20, 30});
    }
    import();
    EXPECT_EQ(namesBelow(child(root(), 0)), (Names{"Skin (TRI_3)", "Skin (QUAD_4)"}));
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0, 1, 2, 4, 5, 6}));
    EXPECT_EQ(integers(0, "Polylength"), (Integers{3, 3}));
    EXPECT_EQ(integers(0, "Element IDs"), (Integers{1, 3}));
    EXPECT_EQ(floats(0, "Pressure"), (Floats{10, 30}));
    EXPECT_EQ(integers(1, "Connectivity"), (Integers{3, 4, 5, 6}));
    EXPECT_EQ(integers(1, "Element IDs"), (Integers{2}));
    EXPECT_EQ(floats(1, "Pressure"), (Floats{20}));
}

TEST_F(ImportCgns, PolygonsHaveTheirOwnNumbersOfNodes) {
    {
        SmallCgnsFile file(input(), 2);
        file.addZone("Zone", 5, 2);
        file.lineOfVertices(5);
        file.sectionWithOffsets("Faces", CGNS_ENUMV(NGON_n), 1, 2, {1, 2, 3, 4, 5, 1, 3, 5}, {0, 5, 8});
    }
    import();
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0, 1, 2, 3, 4, 0, 2, 4}));
    EXPECT_EQ(integers(0, "Polylength"), (Integers{5, 3}));
    EXPECT_EQ(dataset(0, "Connectivity").variableType, 5U);
}

TEST_F(ImportCgns, HexahedraOf27NodesGetTheOrderOfExodus) {
    std::vector<cgsize_t> nodes(27);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i] = static_cast<cgsize_t>(i) + 1;
    }
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 27, 1);
        file.lineOfVertices(27);
        file.section("Solid", CGNS_ENUMV(HEXA_27), 1, 1, nodes);
    }
    import();
    // The centre, then the faces of least and greatest z, x and y.
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                                                     14, 15, 16, 17, 18, 19, 26, 20, 25, 24, 22, 21, 23}));
}

TEST_F(ImportCgns, StructuredZoneBecomesHexahedraWithResults) {
    {
        SmallCgnsFile file(input());
        file.addStructuredZone("Block", {3, 2, 2});
        file.lineOfVertices(12);
        file.solution("Corners", CGNS_ENUMV(Vertex));
        file.field("Velocity_X", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
        file.field("Velocity_Y", std::vector<double>(12, 0.5));
        file.field("Velocity_Z", std::vector<double>(12, 0.25));
        file.solution("Centres", CGNS_ENUMV(CellCenter));
        file.field("Density", {7, 8});
    }
    import();
    EXPECT_EQ(namesBelow(child(root(), 0)), Names{"Cells"});
    EXPECT_EQ(integers(0, "Connectivity"), (Integers{0, 1, 4, 3, 6, 7, 10, 9, 1, 2, 5, 4, 7, 8, 11, 10}));
    EXPECT_EQ(integers(0, "Element IDs"), (Integers{1, 2}));
    const auto velocity = floats(0, "Velocity");
    ASSERT_EQ(velocity.size(), 36U);
    EXPECT_EQ(velocity[33], 12.0F);
    EXPECT_EQ(velocity[34], 0.5F);
    EXPECT_EQ(velocity[35], 0.25F);
    EXPECT_EQ(floats(0, "Density"), (Floats{7, 8}));
}

TEST_F(ImportCgns, StepsHaveTheirTimesAndSolutions) {
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 2, 1);
        file.lineOfVertices(2);
        file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
        file.solution("Later", CGNS_ENUMV(Vertex));
        file.field("Heat", {3, 4});
        file.solution("First", CGNS_ENUMV(Vertex));
        file.field("Heat", {1, 2});
        file.solution("Always", CGNS_ENUMV(Vertex));
        file.field("Depth", {5, 6});
        file.times({0.5, 0.75});
        file.solutionsOfSteps({"First", "Later"});
    }
    import();
    EXPECT_EQ(floats(0, "Heat", "Step 1"), (Floats{1, 2}));
    EXPECT_EQ(floats(0, "Heat", "Step 2"), (Floats{3, 4}));
    EXPECT_EQ(floats(0, "Depth"), (Floats{5, 6}));
    EXPECT_EQ(textOf(saved->attributes(dataset(0, "Heat", "Step 2")), "Time (exact)"), "0.75");
    EXPECT_TRUE(run.says("steps: 2"));
}

TEST_F(ImportCgns, StepsAreChosenByTimeOfTheFirstBaseThatHasThem) {
    {
        SmallCgnsFile file(input());
        for (const auto* base : {"Base", "Longer"}) {
            const bool isLonger = base[0] == 'L';
            if (isLonger) {
                file.addBase(base, 3);
            }
            file.addZone("Zone", 2, 1);
            file.lineOfVertices(2);
            file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
            file.solution("First", CGNS_ENUMV(Vertex));
            file.field("Heat", {1, 2});
            file.solution("Later", CGNS_ENUMV(Vertex));
            file.field("Heat", {3, 4});
            file.times(isLonger ? std::vector<double>{7, 0.75} : std::vector<double>{0.5});
            file.solutionsOfSteps(isLonger ? std::vector<std::string>{"First", "Later"}
                                           : std::vector<std::string>{"First"});
        }
    }
    run = runImport({"--check", "--step", "@0.75", input(), output()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    saved = std::make_unique<ReadBack>(output());
    EXPECT_FALSE(has(0, "Heat", "Step 1"));
    EXPECT_FALSE(has(1, "Heat", "Step 1"));
    EXPECT_EQ(floats(1, "Heat", "Step 2"), (Floats{3, 4}));
    std::filesystem::remove(output());
    run = runImport({"--step", "@7", input(), output()});
    EXPECT_EQ(run.messages,
              "mox import: " + input() + ": has no step \"@7\"; its steps are: 1 @0.5, 2 @0.75\n");
}

TEST_F(ImportCgns, ResultsOfOneZoneStayInIt) {
    {
        SmallCgnsFile file(input());
        for (const auto* zone : {"Left", "Right"}) {
            file.addZone(zone, 2, 1);
            file.lineOfVertices(2);
            file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
        }
        file.solution("Corners", CGNS_ENUMV(Vertex));
        file.field("Heat", {1, 2});
    }
    import();
    EXPECT_EQ(namesBelow(root()), (Names{"Left", "Right"}));
    EXPECT_FALSE(has(0, "Heat"));
    EXPECT_EQ(floats(1, "Heat"), (Floats{1, 2}));
    EXPECT_NE(holder(0, "Coordinates"), holder(1, "Coordinates"));
}

TEST_F(ImportCgns, SeveralBasesBecomeGroupsBelowTheFile) {
    {
        SmallCgnsFile file(input());
        for (const auto* zone : {"A", "B"}) {
            file.addZone(zone, 2, 1);
            file.lineOfVertices(2);
            file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
            if (zone[0] == 'A') {
                file.addBase("Other", 3);
            }
        }
    }
    import();
    EXPECT_EQ(root().name, "model");
    EXPECT_EQ(namesBelow(root()), (Names{"Base", "Other"}));
    EXPECT_EQ(namesBelow(child(root(), 1)), Names{"B"});
}

TEST_F(ImportCgns, WhatCanNotBeTakenIsTold) {
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 4, 1);
        file.coordinate("CoordinateR", {1, 2, 3, 4});
        file.sectionWithOffsets("Cells", CGNS_ENUMV(NFACE_n), 1, 1, {2, 3, 4, 5}, {0, 4});
        file.section("Skin", CGNS_ENUMV(TRI_3), 2, 2, {1, 2, 3});
        file.solution("Centres", CGNS_ENUMV(CellCenter));
        file.field("Heat", {1});
        file.partialSolution("Edges", {1, 2});
    }
    import();
    EXPECT_TRUE(run.says("not taken: coordinates other than CoordinateX, CoordinateY and CoordinateZ: 1 "
                         "(CoordinateR)"));
    EXPECT_TRUE(run.says("not taken: sections of other elements: 1 (Cells: 1 elements of type NFACE_n)"));
    EXPECT_TRUE(run.says("not taken: solutions on cells, since the zone's elements are not its cells: 1 "
                         "(Centres)"));
    EXPECT_TRUE(
        run.says("not taken: solutions elsewhere than on all vertices or all cell centres: 1 (Edges)"));
}

TEST_F(ImportCgns, ElementOfAVertexThatIsNotThereIsRefused) {
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 3, 1);
        file.lineOfVertices(3);
        file.section("Skin", CGNS_ENUMV(TRI_3), 1, 1, {1, 2, 4});
    }
    expectRefused(input(), "damaged: section Skin: it refers to vertex 4 of 3\n");
}

// The library reads as much as HDF5 gives into room for what the node announces.
TEST_F(ImportCgns, FileOnWhichTheLibraryCrashesIsRefused) {
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 2, 1);
        file.lineOfVertices(2);
    }
    const auto file = H5Fopen(input().c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
    const auto numbers = H5Dopen2(file, "Base/ data", H5P_DEFAULT);
    const auto extent = H5Dget_space(numbers);
    const auto text = H5Tcopy(H5T_C_S1);
    H5Tset_size(text, 100000);
    H5Dclose(numbers);
    H5Ldelete(file, "Base/ data", H5P_DEFAULT);
    H5Dclose(H5Dcreate2(file, "Base/ data", text, extent, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Tclose(text);
    H5Sclose(extent);
    H5Fclose(file);
    expectRefused(input(), "libcgns crashed on this file; it is likely damaged\n");
}

TEST_F(ImportCgns, SeparatorOfKeysInTheNameOfAFieldIsReplaced) {
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 2, 1);
        file.lineOfVertices(2);
        file.section("Line", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
        file.solution("Corners", CGNS_ENUMV(Vertex));
        file.field("He\x1E"
                   "at",
                   {1, 2});
    }
    import();
    EXPECT_EQ(floats(0, "He_at"), (Floats{1, 2}));
}

TEST_F(ImportCgns, NamesAreShownWithoutControlCharacters) {
    {
        SmallCgnsFile file(input());
        file.addZone("Zone", 3, 1);
        file.lineOfVertices(3);
        file.section("Sk\x1B[31min", CGNS_ENUMV(TRI_3), 1, 1, {1, 2, 4});
    }
    expectRefused(input(), "damaged: section Sk\\x1B[31min: it refers to vertex 4 of 3\n");
}

TEST_F(ImportCgns, SectionsZonesVariablesAndStepsAreChosen) {
    {
        SmallCgnsFile file(input(), 1);
        for (const auto* zone : {"Left", "Right"}) {
            file.addZone(zone, 3, 2);
            file.lineOfVertices(3);
            file.section("First", CGNS_ENUMV(BAR_2), 1, 1, {1, 2});
            file.section("Second", CGNS_ENUMV(BAR_2), 2, 2, {2, 3});
            file.solution("Centres", CGNS_ENUMV(CellCenter));
            file.field("Heat", {1, 2});
            file.field("Depth", {3, 4});
        }
    }
    run = runImport({"--check", "--block", "Right/Second", "--variable", "Heat", input(), output()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    saved = std::make_unique<ReadBack>(output());
    EXPECT_EQ(namesBelow(root()), Names{"Right"});
    EXPECT_EQ(namesBelow(child(root(), 0)), Names{"Second"});
    EXPECT_EQ(floats(0, "Heat"), Floats{2});
    EXPECT_FALSE(has(0, "Depth"));
    EXPECT_FALSE(run.says("not taken"));
    std::filesystem::remove(output());
    run = runImport({"--block", "Left", input(), output()});
    ASSERT_EQ(run.exitCode, 0) << run.messages;
    EXPECT_TRUE(run.says("shapes: 2,")) << run.messages;
}
