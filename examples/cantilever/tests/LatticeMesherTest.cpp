#include "LatticeMesher.h"

#include <gtest/gtest.h>

namespace Cantilever {
namespace {

Eigen::AlignedBox3d box(double minX, double maxX) {
    return {Eigen::Vector3d(minX, 0, 0), Eigen::Vector3d(maxX, 1, 1)};
}

LatticeMesher threeCells() {
    return {uniformLines(0, 3, 3), uniformLines(0, 1, 1), uniformLines(0, 1, 1)};
}

} // namespace

TEST(LatticeMesher, UniformLinesReachFromEndToEnd) {
    EXPECT_EQ(uniformLines(-1, 2, 3), (GridLines{-1, 0, 1, 2}));
}

TEST(LatticeMesher, JoinedLinesHoldTheCommonLineOnce) {
    EXPECT_EQ(joined({0, 1}, {1, 3, 5}), (GridLines{0, 1, 3, 5}));
}

TEST(LatticeMesher, PartsThatTouchShareTheNodesOfTheInterface) {
    LatticeMesher mesher = threeCells();
    mesher.addPart("Left", {box(0, 1)});
    mesher.addPart("Right", {box(1, 3)});
    const Mesh& mesh = mesher.mesh();
    EXPECT_EQ(mesh.nodes.rows(), 16);
    ASSERT_EQ(mesh.elements.size(), 3U);
    EXPECT_EQ(mesh.elements[0][1], mesh.elements[1][0]);
    EXPECT_EQ(mesh.parts[1].firstElement, 1U);
    EXPECT_EQ(mesh.parts[1].elementCount, 2U);
}

TEST(LatticeMesher, CellsStayWithThePartThatTookThemFirst) {
    LatticeMesher mesher = threeCells();
    mesher.addPart("Middle", {box(1, 2)});
    mesher.addPart("Rest", {box(0, 3)});
    EXPECT_EQ(mesher.mesh().parts[0].elementCount, 1U);
    EXPECT_EQ(mesher.mesh().parts[1].elementCount, 2U);
}

TEST(LatticeMesher, CellsOutsideTheBoxesLeaveNoNodes) {
    LatticeMesher mesher = threeCells();
    mesher.addPart("Ends", {box(0, 1), box(2, 3)});
    EXPECT_EQ(mesher.mesh().elements.size(), 2U);
    EXPECT_EQ(mesher.mesh().nodes.rows(), 16);
}

TEST(LatticeMesher, ElementsGoRoundOneFaceAndThenTheOther) {
    LatticeMesher mesher({0, 2}, {0, 3}, {0, 5});
    mesher.addPart("Cell", {Eigen::AlignedBox3d(Eigen::Vector3d(0, 0, 0), Eigen::Vector3d(2, 3, 5))});
    const Corners expected{{0, 0, 0}, {2, 0, 0}, {2, 3, 0}, {0, 3, 0},
                           {0, 0, 5}, {2, 0, 5}, {2, 3, 5}, {0, 3, 5}};
    EXPECT_EQ(mesher.mesh().cornersOf(mesher.mesh().elements[0]), expected);
}

TEST(Mesh, FindsTheNodesOnAPlane) {
    LatticeMesher mesher = threeCells();
    mesher.addPart("All", {box(0, 3)});
    EXPECT_EQ(mesher.mesh().nodesInside(box(3, 3)).size(), 4U);
}

} // namespace Cantilever
