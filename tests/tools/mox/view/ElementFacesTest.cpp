#include "view/elementFaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace {

using MoxTool::elementFaces;
using Border = std::vector<std::uint32_t>;

struct Solid {
    std::size_t nodes;
    std::size_t faces;
};

class SolidFaces : public testing::TestWithParam<Solid> {};

TEST_P(SolidFaces, MeetEachEdgeTwiceAndOnceFromEitherSide) {
    const auto faces = elementFaces(3, GetParam().nodes);
    ASSERT_EQ(faces.size(), GetParam().faces);
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> edges;
    for (const auto& face : faces) {
        for (std::size_t i = 0; i < face.border.size(); ++i) {
            ++edges[{face.border[i], face.border[(i + 1) % face.border.size()]}];
        }
    }
    for (const auto& [edge, count] : edges) {
        EXPECT_EQ(count, 1) << edge.first << " to " << edge.second;
        EXPECT_TRUE(edges.contains({edge.second, edge.first})) << edge.first << " to " << edge.second;
    }
}

TEST_P(SolidFaces, HaveAllNodesButTheOneInTheMiddle) {
    std::set<std::uint32_t> nodes;
    for (const auto& face : elementFaces(3, GetParam().nodes)) {
        nodes.insert(face.border.begin(), face.border.end());
        if (face.centre) {
            nodes.insert(*face.centre);
        }
    }
    EXPECT_EQ(nodes.size(), GetParam().nodes == 27 ? 26 : GetParam().nodes);
    EXPECT_FALSE(GetParam().nodes == 27 && nodes.contains(20));
}

INSTANTIATE_TEST_SUITE_P(All, SolidFaces,
                         testing::Values(Solid{4, 4}, Solid{10, 4}, Solid{5, 5}, Solid{13, 5}, Solid{6, 5},
                                         Solid{15, 5}, Solid{8, 6}, Solid{20, 6}, Solid{27, 6}),
                         [](const auto& test) { return "Of" + std::to_string(test.param.nodes) + "Nodes"; });

TEST(ElementFaces, OfAHexahedronLookOutwards) {
    const auto faces = elementFaces(3, 8);
    EXPECT_EQ(faces[4].border, (Border{0, 3, 2, 1})) << "the bottom, from below";
    EXPECT_EQ(faces[5].border, (Border{4, 5, 6, 7})) << "the top, from above";
}

TEST(ElementFaces, OfQuadraticElementsAlternateCornersAndMiddles) {
    const auto faces = elementFaces(3, 20);
    EXPECT_EQ(faces[0].border, (Border{0, 8, 1, 13, 5, 16, 4, 12}));
    EXPECT_EQ(faces[0].corners(), 4U);
    EXPECT_EQ(faces[0].corner(1), 1U);
    EXPECT_EQ(elementFaces(3, 10)[3].border, (Border{0, 6, 2, 5, 1, 4}));
    EXPECT_EQ(elementFaces(3, 15)[4].border, (Border{3, 12, 4, 13, 5, 14}));
    EXPECT_EQ(elementFaces(3, 13)[0].border, (Border{0, 5, 1, 10, 4, 9}));
}

TEST(ElementFaces, OfTheHexahedronOf27NodesHaveTheirCentres) {
    std::vector<std::uint32_t> centres;
    for (const auto& face : elementFaces(3, 27)) {
        centres.push_back(face.centre.value_or(0));
    }
    EXPECT_EQ(centres, (Border{25, 24, 26, 23, 21, 22}));
}

TEST(ElementFaces, OfAShellAreTheShellItself) {
    EXPECT_EQ(elementFaces(2, 3).at(0).border, (Border{0, 1, 2}));
    EXPECT_EQ(elementFaces(2, 6).at(0).border, (Border{0, 3, 1, 4, 2, 5}));
    EXPECT_EQ(elementFaces(2, 8).at(0).border, (Border{0, 4, 1, 5, 2, 6, 3, 7}));
    EXPECT_EQ(elementFaces(2, 9).at(0).centre, 8U);
    EXPECT_EQ(MoxTool::polygonFace(5).border, (Border{0, 1, 2, 3, 4}));
}

TEST(ElementFaces, OfUnknownShapesAndLinesAreNone) {
    EXPECT_TRUE(elementFaces(3, 9).empty());
    EXPECT_TRUE(elementFaces(2, 5).empty());
    EXPECT_TRUE(elementFaces(1, 2).empty());
}

} // namespace
