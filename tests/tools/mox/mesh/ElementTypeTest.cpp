#include "mesh/ElementType.h"

#include <gtest/gtest.h>

using MoxTool::ElementType;

TEST(ElementType, SolidsHaveThreeDimensions) {
    for (const auto* type : {"HEX", "hex8", "Tet10", "TETRA4", "WEDGE6", "pyramid5"}) {
        EXPECT_EQ(ElementType(type).dimension(8, 3), 3) << type;
    }
}

TEST(ElementType, FacesHaveTwoDimensions) {
    for (const auto* type : {"TRI3", "tri6", "QUAD", "quad9", "SHELL4", "nsided", "TRISHELL3"}) {
        EXPECT_EQ(ElementType(type).dimension(4, 3), 2) << type;
    }
}

TEST(ElementType, LinesHaveOneDimension) {
    for (const auto* type : {"BAR2", "beam3", "TRUSS", "ROD2", "EDGE3"}) {
        EXPECT_EQ(ElementType(type).dimension(2, 3), 1) << type;
    }
}

TEST(ElementType, SingleNodesCountAsOneDimension) {
    for (const auto* type : {"SPHERE", "sphere", "CIRCLE", "POINT"}) {
        EXPECT_EQ(ElementType(type).dimension(1, 3), 1) << type;
    }
}

TEST(ElementType, ShellOfTwoNodesIsALine) {
    EXPECT_EQ(ElementType("SHELL2").dimension(2, 3), 1);
}

TEST(ElementType, ShellOfThreeNodesIsALineInThePlaneAlone) {
    EXPECT_EQ(ElementType("SHELL").dimension(3, 2), 1);
    EXPECT_EQ(ElementType("SHELL").dimension(3, 3), 2);
}

TEST(ElementType, PolyhedraAreNotTaken) {
    EXPECT_EQ(ElementType("nfaced").dimension(0, 3), std::nullopt);
}

TEST(ElementType, UnknownTypeOfOneNodeIsAPoint) {
    EXPECT_EQ(ElementType("MASS").dimension(1, 3), 1);
}

TEST(ElementType, UnknownTypeOfMoreNodesIsNotTaken) {
    EXPECT_EQ(ElementType("SUPER").dimension(12, 3), std::nullopt);
}

TEST(ElementType, TypeOfDigitsAloneIsUnknown) {
    EXPECT_EQ(ElementType("88").dimension(8, 3), std::nullopt);
}

TEST(ElementType, NsidedIsRecognisedInAnyCase) {
    EXPECT_TRUE(ElementType("NSIDED").isNsided());
    EXPECT_TRUE(ElementType("nsided").isNsided());
    EXPECT_FALSE(ElementType("QUAD4").isNsided());
}
