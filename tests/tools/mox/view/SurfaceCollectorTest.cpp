#include "view/SurfaceCollector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

using MoxTool::ModelMesh;
using MoxTool::Surface;
using SurfaceIds = std::vector<std::uint32_t>;

/// Adds a part whose elements all have as many nodes.
void addPart(ModelMesh& mesh, int dimension, std::size_t nodesPerElement, const SurfaceIds& nodes) {
    MoxTool::MeshPart part;
    part.dimension = dimension;
    part.firstElement = mesh.elementCount();
    part.elements = nodes.size() / nodesPerElement;
    part.firstBlock = mesh.blocks.size();
    part.endBlock = part.firstBlock + 1;
    MoxTool::MeshBlock block;
    block.part = mesh.parts.size();
    const auto* shape = MoxTool::findElementShape(dimension, nodesPerElement);
    block.shape = shape == nullptr ? &MoxTool::UnknownShape : shape;
    block.nodesPerElement = nodesPerElement;
    block.nodes = nodes;
    for (std::size_t row = 0; row < part.elements; ++row) {
        block.rows.push_back(row);
    }
    mesh.blocks.push_back(block);
    mesh.parts.push_back(part);
}

/// 12 nodes: those of two cubes side by side along x.
ModelMesh twoCubes() {
    using Corner = std::array<float, 2>;
    constexpr std::array Corners = {Corner{0, 0}, Corner{1, 0}, Corner{1, 1}, Corner{0, 1}};
    ModelMesh mesh;
    for (const float x : {0.0F, 1.0F, 2.0F}) {
        for (const auto& [y, z] : Corners) {
            mesh.points.insert(mesh.points.end(), {x, y, z});
        }
    }
    return mesh;
}

const SurfaceIds FirstCube = {0, 4, 5, 1, 3, 7, 6, 2};
const SurfaceIds SecondCube = {4, 8, 9, 5, 7, 11, 10, 6};

Surface surfaceOf(const ModelMesh& mesh) {
    return MoxTool::SurfaceCollector(mesh).collect();
}

/// The area of all triangles.
double areaOf(const Surface& surface, const ModelMesh& mesh) {
    double area = 0;
    const auto pointOf = [&](std::size_t corner) {
        const auto node = surface.nodes[surface.triangles.nodes[corner]];
        return Eigen::Vector3d(mesh.points[3 * node], mesh.points[3 * node + 1], mesh.points[3 * node + 2]);
    };
    for (std::size_t i = 0; i < surface.triangles.nodes.size(); i += 3) {
        const Eigen::Vector3d one = pointOf(i + 1) - pointOf(i);
        const Eigen::Vector3d other = pointOf(i + 2) - pointOf(i);
        area += one.cross(other).norm() / 2;
    }
    return area;
}

TEST(SurfaceCollector, OneCubeHasTwelveTrianglesAndTwelveEdges) {
    auto mesh = twoCubes();
    addPart(mesh, 3, 8, FirstCube);
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.nodes, (SurfaceIds{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(surface.triangles.elements.size(), 12U);
    EXPECT_EQ(surface.edges.elements.size(), 12U);
    EXPECT_EQ(surface.outline.elements.size(), 12U);
    EXPECT_DOUBLE_EQ(areaOf(surface, mesh), 6);
}

TEST(SurfaceCollector, FaceThatTwoElementsShareIsInside) {
    auto mesh = twoCubes();
    auto nodes = FirstCube;
    nodes.insert(nodes.end(), SecondCube.begin(), SecondCube.end());
    addPart(mesh, 3, 8, nodes);
    const auto surface = surfaceOf(mesh);
    EXPECT_DOUBLE_EQ(areaOf(surface, mesh), 10);
    EXPECT_EQ(surface.edges.elements.size(), 20U);
    EXPECT_EQ(surface.outline.elements.size(), 16U) << "the four edges between the cubes lie in planes";
    EXPECT_EQ(surface.elements, (SurfaceIds{0, 1}));
}

TEST(SurfaceCollector, PartsThatTouchAreBothClosed) {
    auto mesh = twoCubes();
    addPart(mesh, 3, 8, FirstCube);
    addPart(mesh, 3, 8, SecondCube);
    const auto surface = surfaceOf(mesh);
    EXPECT_DOUBLE_EQ(areaOf(surface, mesh), 12);
    EXPECT_EQ(surface.partEnds, (SurfaceIds{1, 2}));
}

TEST(SurfaceCollector, ElementInsideIsNotShown) {
    ModelMesh mesh;
    for (int z = 0; z < 4; ++z) {
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 4; ++x) {
                for (const int place : {x, y, z}) {
                    mesh.points.push_back(static_cast<float>(place));
                }
            }
        }
    }
    SurfaceIds nodes;
    for (std::uint32_t cube = 0; cube < 27; ++cube) {
        const auto first = cube % 3 + cube / 3 % 3 * 4 + cube / 9 * 16;
        for (const std::uint32_t offset : {0U, 1U, 5U, 4U, 16U, 17U, 21U, 20U}) {
            nodes.push_back(first + offset);
        }
    }
    addPart(mesh, 3, 8, nodes);
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.elements.size(), 26U);
    EXPECT_FALSE(std::binary_search(surface.elements.begin(), surface.elements.end(), 13U));
    EXPECT_EQ(surface.nodes.size(), 56U);
    EXPECT_DOUBLE_EQ(areaOf(surface, mesh), 54);
}

TEST(SurfaceCollector, HexahedronCollapsedToAWedgeFitsItsNeighbour) {
    auto mesh = twoCubes();
    addPart(mesh, 3, 8, {0, 4, 5, 5, 3, 7, 6, 6, 0, 5, 1, 1, 3, 6, 2, 2});
    const auto surface = surfaceOf(mesh);
    EXPECT_NEAR(areaOf(surface, mesh), 6, 1e-12) << "the face between the two halves is inside";
}

TEST(SurfaceCollector, TrianglesReferToTheirElements) {
    auto mesh = twoCubes();
    addPart(mesh, 2, 3, {0, 1, 2, 4, 5, 6});
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.nodes, (SurfaceIds{0, 1, 2, 4, 5, 6}));
    EXPECT_EQ(surface.triangles.nodes, (SurfaceIds{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(surface.triangles.elements, (SurfaceIds{0, 1}));
    EXPECT_EQ(surface.edges.elements.size(), 6U);
}

TEST(SurfaceCollector, QuadraticFacesKeepTheirMiddles) {
    ModelMesh mesh;
    mesh.points = {0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0, 1, -0.5F, 0, 2, 1, 0, 1, 2, 0, 0, 1, 0};
    addPart(mesh, 2, 8, {0, 1, 2, 3, 4, 5, 6, 7});
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.triangles.elements.size(), 6U);
    EXPECT_EQ(surface.edges.elements.size(), 8U);
    EXPECT_DOUBLE_EQ(areaOf(surface, mesh), 4.5) << "with the bulge of the lower edge";
}

TEST(SurfaceCollector, QuadrangleIsCutInsideWhereACornerPointsInwards) {
    ModelMesh mesh;
    mesh.points = {0, 0, 0, 4, 0, 0, 1, 1, 0, 0, 4, 0};
    addPart(mesh, 2, 4, {1, 2, 3, 0});
    const auto surface = surfaceOf(mesh);
    EXPECT_DOUBLE_EQ(areaOf(surface, mesh), 4);
    EXPECT_EQ(surface.outline.elements.size(), 4U);
}

TEST(SurfaceCollector, BeamsAreLinesThroughTheirMiddleNode) {
    auto mesh = twoCubes();
    addPart(mesh, 1, 2, {0, 4, 4, 8});
    addPart(mesh, 1, 3, {1, 9, 5});
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.nodes, (SurfaceIds{0, 1, 4, 5, 8, 9}));
    EXPECT_EQ(surface.lines.nodes, (SurfaceIds{0, 2, 2, 4, 1, 3, 3, 5}));
    EXPECT_EQ(surface.lines.elements, (SurfaceIds{0, 1, 2, 2}));
    EXPECT_TRUE(surface.triangles.nodes.empty());
    EXPECT_TRUE(surface.edges.nodes.empty());
}

TEST(SurfaceCollector, SingleNodesAndUnknownShapesArePoints) {
    auto mesh = twoCubes();
    addPart(mesh, 1, 1, {3});
    addPart(mesh, 3, 7, {0, 1, 2, 4, 5, 6, 7});
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.points.elements, (SurfaceIds{0, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(surface.nodes.size(), 8U);
    EXPECT_EQ(surface.points.nodes.front(), 3U);
}

TEST(SurfaceCollector, PolygonsBecomeFans) {
    auto mesh = twoCubes();
    addPart(mesh, 2, 4, {0, 1, 2, 3});
    auto& block = mesh.blocks[0];
    block.shape = &MoxTool::PolygonShape;
    block.nodesPerElement = 0;
    block.lengths = {5};
    block.nodes = {0, 1, 2, 3, 7};
    const auto surface = surfaceOf(mesh);
    EXPECT_EQ(surface.triangles.elements, (SurfaceIds{0, 0, 0}));
    EXPECT_EQ(surface.edges.elements.size(), 5U);
}

} // namespace
