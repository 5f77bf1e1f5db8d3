#include "MoxReader/ChildTable.h"

#include "Support/ExpectError.h"

using MoxReader::ChildTable;
using MoxReader::ErrorCode;
using MoxReader::Node;

namespace {

struct Links {
    std::uint32_t parent, previous, next, firstChild, lastChild;
};

std::vector<Node> nodesOf(const std::vector<Links>& all) {
    std::vector<Node> nodes;
    for (const auto& links : all) {
        Node node;
        node.id = static_cast<std::uint32_t>(nodes.size() + 1);
        node.parent = links.parent;
        node.previous = links.previous;
        node.next = links.next;
        node.firstChild = links.firstChild;
        node.lastChild = links.lastChild;
        nodes.push_back(node);
    }
    return nodes;
}

/// Node 1 has the children 2, 3 and 5; node 2 has the child 4.
const std::vector<Links> Family = {
    {0, 0, 0, 2, 5}, {1, 0, 3, 4, 4}, {1, 2, 5, 0, 0}, {2, 0, 0, 0, 0}, {1, 3, 0, 0, 0}};

std::vector<std::uint32_t> childrenOf(const ChildTable& table, std::uint32_t id) {
    const auto span = table.children(id);
    return {span.begin(), span.end()};
}

void expectBadLink(std::size_t node, std::uint32_t Links::*link, std::uint32_t value) {
    auto links = Family;
    links[node - 1].*link = value;
    expectError(ErrorCode::BadTreeLink, [&] { ChildTable table(nodesOf(links)); });
}

} // namespace

TEST(ChildTable, ListsTheChildrenOfEachNodeInOrder) {
    const ChildTable table(nodesOf(Family));
    EXPECT_EQ((std::vector<std::uint32_t>{2, 3, 5}), childrenOf(table, 1));
    EXPECT_EQ((std::vector<std::uint32_t>{4}), childrenOf(table, 2));
    EXPECT_TRUE(childrenOf(table, 3).empty());
    EXPECT_TRUE(childrenOf(table, 5).empty());
}

TEST(ChildTable, ARootAloneHasNoChildren) {
    EXPECT_TRUE(childrenOf(ChildTable(nodesOf({{}})), 1).empty());
}

TEST(ChildTable, AnyWrongLinkIsFound) {
    expectBadLink(1, &Links::parent, 1);
    expectBadLink(1, &Links::previous, 2);
    expectBadLink(1, &Links::next, 2);
    expectBadLink(1, &Links::firstChild, 3);
    expectBadLink(1, &Links::lastChild, 3);
    expectBadLink(2, &Links::previous, 5);
    expectBadLink(2, &Links::next, 5);
    expectBadLink(3, &Links::previous, 0);
    expectBadLink(5, &Links::next, 2);
    expectBadLink(3, &Links::firstChild, 4);
    expectBadLink(3, &Links::lastChild, 4);
}

TEST(ChildTable, AParentMustComeBeforeItsChild) {
    expectBadLink(2, &Links::parent, 0);
    expectBadLink(2, &Links::parent, 2);
    expectBadLink(2, &Links::parent, 4);
    expectBadLink(2, &Links::parent, 0xFFFFFFFF);
}
