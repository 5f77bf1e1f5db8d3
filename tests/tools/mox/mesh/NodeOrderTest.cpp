#include "mesh/NodeOrder.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

using MoxTool::gmshNodeOrder;

namespace {

using ElementNodes = std::vector<unsigned int>;

// An element whose nodes are numbered by their places in Gmsh, in the order of Exodus.
ElementNodes inExodusOrder(int gmshType, std::size_t nodes) {
    ElementNodes element(nodes);
    std::iota(element.begin(), element.end(), 0U);
    MoxTool::reorderNodes(element, gmshNodeOrder(gmshType));
    return element;
}

} // namespace

// Gmsh has the edges 0-1 1-2 0-2 0-3 2-3 1-3, Exodus 0-1 1-2 2-0 0-3 1-3 2-3.
TEST(NodeOrder, TetrahedronOf10NodesHasItsLastTwoExchanged) {
    EXPECT_EQ(inExodusOrder(11, 10), (ElementNodes{0, 1, 2, 3, 4, 5, 6, 7, 9, 8}));
}

// Gmsh has the edges 0-1 0-3 0-4 1-2 1-5 2-3 2-6 3-7 4-5 4-7 5-6 6-7, Exodus those of the bottom, the upright
// ones, and those of the top.
TEST(NodeOrder, HexahedronOf20NodesGoesRoundItsLevels) {
    EXPECT_EQ(inExodusOrder(17, 20),
              (ElementNodes{0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 13, 9, 10, 12, 14, 15, 16, 18, 19, 17}));
}

// After the edges Gmsh has the faces -z -y -x +x +y +z and the centre, Exodus the centre and -z +z -x +x -y
// +y.
TEST(NodeOrder, HexahedronOf27NodesHasItsCentreBeforeItsFaces) {
    const auto element = inExodusOrder(12, 27);
    EXPECT_EQ(ElementNodes(element.begin() + 20, element.end()), (ElementNodes{26, 20, 25, 22, 23, 21, 24}));
}

// Gmsh has the edges 0-1 0-2 0-3 1-2 1-4 2-5 3-4 3-5 4-5.
TEST(NodeOrder, PrismOf15NodesGoesRoundItsLevels) {
    EXPECT_EQ(inExodusOrder(18, 15), (ElementNodes{0, 1, 2, 3, 4, 5, 6, 9, 7, 8, 10, 11, 12, 14, 13}));
}

// Gmsh has the edges 0-1 0-3 0-4 1-2 1-4 2-3 2-4 3-4.
TEST(NodeOrder, PyramidOf13NodesGoesRoundItsBase) {
    EXPECT_EQ(inExodusOrder(19, 13), (ElementNodes{0, 1, 2, 3, 4, 5, 8, 10, 6, 7, 9, 11, 12}));
}

TEST(NodeOrder, OtherElementsStayAsTheyAre) {
    EXPECT_EQ(inExodusOrder(9, 6), (ElementNodes{0, 1, 2, 3, 4, 5}));
    EXPECT_TRUE(MoxTool::cgnsSolidNodeOrder(20).empty());
}

TEST(NodeOrder, EveryElementOfAListIsReordered) {
    ElementNodes nodes(20);
    std::iota(nodes.begin(), nodes.end(), 0U);
    MoxTool::reorderNodes(nodes, gmshNodeOrder(11));
    EXPECT_EQ(nodes, (ElementNodes{0, 1, 2, 3, 4, 5, 6, 7, 9, 8, 10, 11, 12, 13, 14, 15, 16, 17, 19, 18}));
}
