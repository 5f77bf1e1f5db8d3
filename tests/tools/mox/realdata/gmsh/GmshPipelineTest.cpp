#include "../Pipeline.h"
#include "GmshContent.h"

#include <sstream>

namespace {

// An element to write: Gmsh's number of its type, its number of nodes, its physical group and its entity.
struct Element {
    int type;
    int nodes;
    int group;
    int entity;
};

// The kinds of higher order, in two volumes of one group and two surfaces of one group; a curve in no group,
// and a point.
const std::vector<Element> Elements = {{15, 1, 0, 4},  {8, 3, 0, 3},   {10, 9, 6, 1},  {9, 6, 6, 2},
                                       {16, 8, 6, 1},  {12, 27, 5, 1}, {17, 20, 5, 1}, {18, 15, 5, 2},
                                       {19, 13, 5, 2}, {11, 10, 5, 2}, {11, 10, 5, 1}, {4, 4, 5, 1},
                                       {5, 8, 5, 2},   {6, 6, 5, 2},   {7, 5, 5, 1}};

int nodeCount() {
    int count = 0;
    for (const auto& element : Elements) {
        count += element.nodes;
    }
    return count;
}

// Tags fall, with gaps.
int nodeTag(int place) {
    return 3 * (nodeCount() - place);
}

int elementTag(std::size_t place) {
    return 500 + 2 * static_cast<int>(place);
}

// Each element has nodes of its own.
std::string meshText() {
    std::ostringstream text;
    text << "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$PhysicalNames\n2\n3 5 \"solids\"\n2 6 \"skin\"\n"
         << "$EndPhysicalNames\n$Nodes\n"
         << nodeCount() << '\n';
    for (int node = 0; node < nodeCount(); ++node) {
        text << nodeTag(node) << ' ' << 0.1 * node << ' ' << -0.3 * node << ' ' << 7.7 * node << '\n';
    }
    text << "$EndNodes\n$Elements\n" << Elements.size() << '\n';
    int next = 0;
    for (std::size_t i = 0; i < Elements.size(); ++i) {
        const auto& element = Elements[i];
        text << elementTag(i) << ' ' << element.type << " 2 " << element.group << ' ' << element.entity;
        for (int node = 0; node < element.nodes; ++node) {
            text << ' ' << nodeTag(next++);
        }
        text << '\n';
    }
    text << "$EndElements\n";
    return text.str();
}

// One view of one step.
std::string viewText(const std::string& section, const std::string& name, int step, double time,
                     const std::vector<std::pair<int, std::string>>& values, int components) {
    std::ostringstream text;
    text << '$' << section << "\n1\n\"" << name << "\"\n1\n"
         << time << "\n3\n"
         << step << '\n'
         << components << '\n'
         << values.size() << '\n';
    for (const auto& [tag, numbers] : values) {
        text << tag << ' ' << numbers << '\n';
    }
    text << "$End" << section << '\n';
    return text.str();
}

std::string onAllNodes(int step, double time) {
    std::vector<std::pair<int, std::string>> values;
    for (int node = 0; node < nodeCount(); ++node) {
        values.emplace_back(nodeTag(node), std::to_string(node + time));
    }
    return viewText("NodeData", "heat", step, time, values, 1);
}

std::string writeSolids(const Support::TemporaryFolder& folder) {
    const auto first = elementTag(5);
    const auto second = elementTag(7);
    const auto last = elementTag(14);
    auto text = meshText() + onAllNodes(0, 0.25) + onAllNodes(1, 0.7);
    text +=
        viewText("NodeData", "disp", 1, 0.7, {{nodeTag(0), "1.1 2.2 3.3"}, {nodeTag(9), "4.4 5.5 6.6"}}, 3);
    text += viewText(
        "ElementData", "stress", 0, 0.25,
        {{first, "1.1 4.4 6.6 4.4 2.2 5.5 6.6 5.5 3.3"}, {last, "7 0.1 0.2 0.1 8 0.3 0.2 0.3 9"}}, 9);
    text += viewText("ElementData", "load", 0, 0.25, {{first, "0.1"}, {second, "0.2"}}, 1);
    text += viewText("ElementData", "load", 1, 0.7, {{second, "0.3"}, {elementTag(9), "0.4"}}, 1);
    return folder.write("solids.msh", text);
}

// No available Gmsh file has results to combine.
ModelContent readRealFile(const std::string& path) {
    auto content = readGmsh(path);
    if (content.variables.empty()) {
        content.gathered.emplace();
    }
    return content;
}

ModelContent readSolids(const std::string& path) {
    auto content = readGmsh(path);
    content.gathered = {
        {true, "Displacement", {"disp_x", "disp_y", "disp_z"}},
        {false, "stress", {"stress_xx", "stress_yy", "stress_zz", "stress_xy", "stress_yz", "stress_zx"}}};
    return content;
}

const PipelineCase Solids = {"solids_of_two_steps", writeSolids, readSolids};

} // namespace

INSTANTIATE_TEST_SUITE_P(RealGmsh, Pipeline, testing::ValuesIn(casesOfData({".msh"}, readRealFile)),
                         nameOfCase);
INSTANTIATE_TEST_SUITE_P(SmallGmsh, Pipeline, testing::Values(Solids), nameOfCase);
