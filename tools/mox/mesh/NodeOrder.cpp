#include "NodeOrder.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace MoxTool {

namespace {

constexpr std::array<std::uint8_t, 10> GmshTetrahedron10 = {0, 1, 2, 3, 4, 5, 6, 7, 9, 8};
constexpr std::array<std::uint8_t, 13> GmshPyramid13 = {0, 1, 2, 3, 4, 5, 8, 10, 6, 7, 9, 11, 12};
constexpr std::array<std::uint8_t, 15> GmshPrism15 = {0, 1, 2, 3, 4, 5, 6, 9, 7, 8, 10, 11, 12, 14, 13};
constexpr std::array<std::uint8_t, 27> GmshHexahedron27 = {
    0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 13, 9, 10, 12, 14, 15, 16, 18, 19, 17, 26, 20, 25, 22, 23, 21, 24};
constexpr std::array<std::uint8_t, 27> CgnsHexahedron27 = {
    0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 26, 20, 25, 24, 22, 21, 23};

struct GmshType {
    int type;
    NodeOrder order;
};

constexpr std::array GmshTypes = {
    GmshType{11, GmshTetrahedron10},
    GmshType{12, GmshHexahedron27},
    GmshType{17, NodeOrder(GmshHexahedron27).first<20>()},
    GmshType{18, GmshPrism15},
    GmshType{19, GmshPyramid13},
};

} // namespace

NodeOrder gmshNodeOrder(int elementType) {
    for (const auto& known : GmshTypes) {
        if (known.type == elementType) {
            return known.order;
        }
    }
    return {};
}

NodeOrder cgnsSolidNodeOrder(int nodes) {
    return nodes == 27 ? NodeOrder(CgnsHexahedron27) : NodeOrder();
}

void reorderNodes(std::vector<unsigned int>& connectivity, NodeOrder order) {
    if (order.empty()) {
        return;
    }
    std::vector<unsigned int> element(order.size());
    for (auto first = connectivity.begin(); first != connectivity.end();) {
        for (std::size_t node = 0; node < order.size(); ++node) {
            element[node] = first[order[node]];
        }
        first = std::copy(element.begin(), element.end(), first);
    }
}

} // namespace MoxTool
