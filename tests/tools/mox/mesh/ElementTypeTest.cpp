#include "mesh/ElementType.h"

#include <gtest/gtest.h>

using MoxTool::elementDimension;

TEST(ElementType, SolidsHaveThreeDimensions) {
    for (const auto* type : {"HEX", "hex8", "Tet10", "TETRA4", "WEDGE6", "pyramid5"})
        EXPECT_EQ(elementDimension(type, 8, 3), 3) << type;
}

TEST(ElementType, FacesHaveTwoDimensions) {
    for (const auto* type : {"TRI3", "tri6", "QUAD", "quad9", "SHELL4", "nsided", "TRISHELL3"})
        EXPECT_EQ(elementDimension(type, 4, 3), 2) << type;
}

TEST(ElementType, LinesHaveOneDimension) {
    for (const auto* type : {"BAR2", "beam3", "TRUSS", "ROD2", "EDGE3"})
        EXPECT_EQ(elementDimension(type, 2, 3), 1) << type;
}

TEST(ElementType, SingleNodesCountAsOneDimension) {
    for (const auto* type : {"SPHERE", "sphere", "CIRCLE", "POINT"})
        EXPECT_EQ(elementDimension(type, 1, 3), 1) << type;
}

TEST(ElementType, ShellOfTwoNodesIsALine) {
    EXPECT_EQ(elementDimension("SHELL2", 2, 3), 1);
}

TEST(ElementType, ShellOfThreeNodesIsALineInThePlaneAlone) {
    EXPECT_EQ(elementDimension("SHELL", 3, 2), 1);
    EXPECT_EQ(elementDimension("SHELL", 3, 3), 2);
}

TEST(ElementType, PolyhedraAreNotTaken) {
    EXPECT_EQ(elementDimension("nfaced", 0, 3), std::nullopt);
}

TEST(ElementType, UnknownTypeOfOneNodeIsAPoint) {
    EXPECT_EQ(elementDimension("MASS", 1, 3), 1);
}

TEST(ElementType, UnknownTypeOfMoreNodesIsNotTaken) {
    EXPECT_EQ(elementDimension("SUPER", 12, 3), std::nullopt);
}

TEST(ElementType, TypeOfDigitsAloneIsUnknown) {
    EXPECT_EQ(elementDimension("88", 8, 3), std::nullopt);
}

TEST(ElementType, NsidedIsRecognisedInAnyCase) {
    EXPECT_TRUE(MoxTool::isNsided("NSIDED"));
    EXPECT_TRUE(MoxTool::isNsided("nsided"));
    EXPECT_FALSE(MoxTool::isNsided("QUAD4"));
}
