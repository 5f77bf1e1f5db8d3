#include "mesh/ElementShape.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using MoxTool::findElementShape;

namespace {

std::string typeOf(int dimension, std::size_t nodes) {
    const auto* shape = findElementShape(dimension, nodes);
    return shape == nullptr ? "none" : shape->exodusType;
}

std::vector<int> orderOf(std::size_t nodes) {
    const auto order = findElementShape(3, nodes)->vtkOrder;
    return {order.begin(), order.end()};
}

} // namespace

TEST(ElementShape, DimensionAndNumberOfNodesDecide) {
    EXPECT_EQ(typeOf(1, 1), "SPHERE");
    EXPECT_EQ(typeOf(1, 2), "BAR2");
    EXPECT_EQ(typeOf(2, 3), "TRI3");
    EXPECT_EQ(typeOf(2, 4), "SHELL4");
    EXPECT_EQ(typeOf(3, 4), "TETRA4");
    EXPECT_EQ(typeOf(3, 5), "PYRAMID5");
    EXPECT_EQ(typeOf(3, 6), "WEDGE6");
    EXPECT_EQ(typeOf(3, 8), "HEX8");
    EXPECT_EQ(typeOf(3, 10), "TETRA10");
    EXPECT_EQ(typeOf(2, 5), "none");
    EXPECT_EQ(typeOf(3, 7), "none");
    EXPECT_STREQ(findElementShape(2, 4)->planarType, "QUAD4");
}

TEST(ElementShape, MiddleNodesOfWedgesAndHexahedraChangePlacesForVtk) {
    EXPECT_EQ(orderOf(8), std::vector<int>());
    EXPECT_EQ(orderOf(15), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 9, 10, 11}));
    EXPECT_EQ(orderOf(27), (std::vector<int>{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 16, 17,
                                             18, 19, 12, 13, 14, 15, 23, 24, 25, 26, 21, 22, 20}));
}
