#include "MoxReader/LinkTable.h"

#include "Support/ExpectError.h"

using MoxReader::Dataset;
using MoxReader::ErrorCode;
using MoxReader::LinkTable;
using MoxReader::Node;

namespace {

Dataset holder() {
    return {};
}

Dataset linkTo(std::uint32_t node, std::uint32_t index) {
    Dataset dataset;
    dataset.isLink = true;
    dataset.linkNodeId = node;
    dataset.linkIndex = index;
    return dataset;
}

/// Geometries with ids from 1.
std::vector<Node> geometries(const std::vector<std::vector<Dataset>>& all) {
    std::vector<Node> nodes;
    for (const auto& datasets : all) {
        Node node;
        node.id = static_cast<std::uint32_t>(nodes.size() + 1);
        MoxReader::Geometry geometry{datasets};
        for (std::size_t i = 0; i < datasets.size(); ++i) {
            geometry.datasets[i].nodeId = node.id;
            geometry.datasets[i].index = static_cast<std::uint32_t>(i);
        }
        node.content = geometry;
        nodes.push_back(node);
    }
    return nodes;
}

void expectHolder(const LinkTable& table, std::uint32_t node, std::uint32_t index, const Dataset& expected) {
    EXPECT_EQ(LinkTable::Resolution(&expected), table.resolution(node, index));
}

void expectNone(const LinkTable& table, std::uint32_t node, std::uint32_t index, ErrorCode why) {
    EXPECT_EQ(LinkTable::Resolution(why), table.resolution(node, index));
}

} // namespace

TEST(LinkTable, ADatasetWithNumbersHoldsThemItself) {
    const auto nodes = geometries({{holder(), holder()}});
    const LinkTable table(nodes);
    expectHolder(table, 1, 1, nodes[0].geometry()->datasets[1]);
}

TEST(LinkTable, ChainsOfLinksEndAtOneHolder) {
    const auto nodes = geometries({{linkTo(2, 1), linkTo(1, 0)}, {linkTo(1, 1), linkTo(2, 2), holder()}});
    const LinkTable table(nodes);
    const auto& end = nodes[1].geometry()->datasets[2];
    for (const std::uint32_t index : {0u, 1u}) {
        expectHolder(table, 1, index, end);
    }
    for (const std::uint32_t index : {0u, 1u, 2u}) {
        expectHolder(table, 2, index, end);
    }
}

TEST(LinkTable, LinksThatRunInARingHaveNoHolder) {
    const auto nodes = geometries({{linkTo(1, 0), linkTo(1, 2), linkTo(1, 1), linkTo(1, 1), holder()}});
    const LinkTable table(nodes);
    for (const std::uint32_t index : {0u, 1u, 2u, 3u}) {
        expectNone(table, 1, index, ErrorCode::LinkCycle);
    }
    expectHolder(table, 1, 4, nodes[0].geometry()->datasets[4]);
}

TEST(LinkTable, TargetsThatDoNotExistAreBad) {
    auto nodes = geometries({{linkTo(0, 0), linkTo(9, 0), linkTo(1, 5), linkTo(2, 0), linkTo(1, 2)}});
    nodes.emplace_back().id = 2;
    const LinkTable table(nodes);
    for (const std::uint32_t index : {0u, 1u, 2u, 3u, 4u}) {
        expectNone(table, 1, index, ErrorCode::BadLinkTarget);
    }
}

TEST(LinkTable, AskingForADatasetThatDoesNotExistIsAnError) {
    const auto nodes = geometries({{holder()}});
    const LinkTable table(nodes);
    expectError(ErrorCode::NoSuchNode, [&] { table.resolution(0, 0); });
    expectError(ErrorCode::NoSuchNode, [&] { table.resolution(1, 1); });
    expectError(ErrorCode::NoSuchNode, [&] { table.resolution(2, 0); });
}
