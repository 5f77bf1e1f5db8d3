#include "../../import/cgns/SmallCgnsFile.h"
#include "../Pipeline.h"
#include "CgnsContent.h"

#include <numeric>

namespace {

// Numbers that no float holds exactly.
Numbers numbers(std::size_t count, double first) {
    Numbers result(count);
    for (std::size_t i = 0; i < count; ++i) {
        result[i] = first + 0.1 * static_cast<double>(i);
    }
    return result;
}

void writeVertices(SmallCgnsFile& file, std::size_t count) {
    file.coordinate("CoordinateX", numbers(count, 0.3));
    file.coordinate("CoordinateY", numbers(count, -7.7));
    file.coordinate("CoordinateZ", numbers(count, 1000));
}

std::vector<cgsize_t> range(cgsize_t first, std::size_t count) {
    std::vector<cgsize_t> nodes(count);
    std::iota(nodes.begin(), nodes.end(), first);
    return nodes;
}

// Faces that are not cells, then a solid of each kind of higher order, then a mixture.
void writeSolids(SmallCgnsFile& file) {
    file.addZone("Solids", 85, 8);
    writeVertices(file, 85);
    file.sectionWithOffsets("Skin", CGNS_ENUMV(NGON_n), 1, 2, {1, 2, 3, 4, 9, 5, 6, 7}, {0, 5, 8});
    file.section("Hexahedron of 27", CGNS_ENUMV(HEXA_27), 3, 3, range(1, 27));
    file.section("Hexahedron of 20", CGNS_ENUMV(HEXA_20), 4, 4, range(28, 20));
    file.section("Wedge", CGNS_ENUMV(PENTA_15), 5, 5, range(48, 15));
    file.section("Pyramid", CGNS_ENUMV(PYRA_13), 6, 6, range(63, 13));
    file.section("Tetrahedron", CGNS_ENUMV(TETRA_10), 7, 7, range(76, 10));
    file.sectionWithOffsets("Mixture", CGNS_ENUMV(MIXED), 8, 10,
                            {CGNS_ENUMV(TETRA_4), 1, 2, 3, 5, CGNS_ENUMV(HEXA_8), 11, 12, 13, 14, 15, 16, 17,
                             18, CGNS_ENUMV(TETRA_4), 7, 8, 9, 10},
                            {0, 5, 14, 19});
    file.section("Faces", CGNS_ENUMV(QUAD_9), 11, 12, range(20, 18));
    file.section("Edges", CGNS_ENUMV(BAR_3), 13, 14, range(40, 6));
    file.section("Ends", CGNS_ENUMV(NODE), 15, 16, {85, 1});
}

void writeStep(SmallCgnsFile& file, const std::string& step, double first) {
    file.solution("Vertices" + step, CGNS_ENUMV(Vertex));
    for (const auto* name : {"Temperature", "VelocityX", "VelocityY", "VelocityZ"}) {
        file.field(name, numbers(85, first += 100));
    }
    file.solution("Cells" + step, CGNS_ENUMV(CellCenter));
    for (const auto* name :
         {"Density", "StressXX", "StressXY", "StressYY", "StressYZ", "StressZX", "StressZZ"}) {
        file.field(name, numbers(8, first += 100));
    }
}

// A structured zone of two cells, with results in the second step only and two without a step, one of which
// has a name that a model uses itself. The library puts the zone before the other one.
void writeBlock(SmallCgnsFile& file) {
    file.addStructuredZone("Block", {3, 2, 2});
    writeVertices(file, 12);
    file.solution("Vertices", CGNS_ENUMV(Vertex));
    file.field("Temperature", numbers(12, -4000));
    file.solution("Cells", CGNS_ENUMV(CellCenter));
    file.field("Density", numbers(2, -5000));
    file.solution("Always", CGNS_ENUMV(Vertex));
    file.field("Depth", numbers(12, -6000));
    file.field("Node Ids", numbers(12, -7000));
    file.solutionsOfSteps({"None", "Vertices"});
    file.solutionsOfSteps({"None", "Cells"}, "CellSolutionPointers");
}

std::string writeTwoZones(const Support::TemporaryFolder& folder) {
    SmallCgnsFile file(folder.path("zones.cgns"));
    writeSolids(file);
    writeStep(file, "1", 1000);
    writeStep(file, "2", 3000);
    file.times({0.1, 0.7});
    file.solutionsOfSteps({"Vertices1", "Vertices2"});
    file.solutionsOfSteps({"Cells1", "Cells2"}, "CellSolutionPointers");
    writeBlock(file);
    return folder.path("zones.cgns");
}

// No available CGNS file has results to combine.
ModelContent readRealFile(const std::string& path) {
    auto content = readCgns(path);
    if (content.variables.empty()) {
        content.gathered.emplace();
    }
    return content;
}

ModelContent readTwoZones(const std::string& path) {
    auto content = readCgns(path);
    content.gathered = {
        {true, "Velocity", {"VelocityX", "VelocityY", "VelocityZ"}},
        {true, "Node Ids (2)", {"Node Ids"}},
        {false, "Stress", {"StressXX", "StressYY", "StressZZ", "StressXY", "StressYZ", "StressZX"}}};
    return content;
}

const PipelineCase TwoZones = {"zones_of_two_steps", writeTwoZones, readTwoZones};

} // namespace

INSTANTIATE_TEST_SUITE_P(RealCgns, Pipeline, testing::ValuesIn(casesOfData({".cgns"}, readRealFile)),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(SmallCgns, Pipeline, testing::Values(TwoZones), nameOfCase);
