#include "TreeCheck.h"

#include "../common/visibleText.h"

#include <fmt/format.h>

#include <set>
#include <string_view>
#include <utility>

namespace MoxTool {

namespace {

using MoxReader::Node;
using MoxReader::NodeRecord;

class TreeCheck {
public:
    TreeCheck(const std::vector<Node>& nodes, FindingList& findings) : nodes_(nodes), findings_(findings) {}

    void run() {
        for (std::uint32_t id = 1; id <= nodes_.size(); ++id) {
            checkId(id);
            checkParent(id);
            checkSiblings(id);
            checkEnds(id);
            checkChildren(id);
        }
        checkNames();
    }

private:
    const Node* find(std::uint32_t id) const {
        return id == 0 || id > nodes_.size() ? nullptr : &nodes_[id - 1];
    }

    void require(bool isSound, RuleId rule, std::uint32_t id, const char* reason, std::uint32_t other) {
        if (!isSound) {
            findings_.add(rule, fmt::format("{} {}", reason, other), {.node = id});
        }
    }

    void checkId(std::uint32_t id) {
        require(nodes_[id - 1].id == id, RuleId::NodeIds, id, "its id is", nodes_[id - 1].id);
    }

    void checkParent(std::uint32_t id) {
        const auto parent = nodes_[id - 1].parent;
        require(id == 1 ? parent == 0 : parent != 0 && parent < id, RuleId::Parent, id, "its parent is",
                parent);
    }

    void checkSiblings(std::uint32_t id) {
        const auto& node = nodes_[id - 1];
        if (node.next != 0) {
            require(node.next > id && isSibling(node, &NodeRecord::next, &NodeRecord::previous, id),
                    RuleId::Siblings, id, "its next sibling is", node.next);
        }
        if (node.previous != 0) {
            require(node.previous < id && isSibling(node, &NodeRecord::previous, &NodeRecord::next, id),
                    RuleId::Siblings, id, "its previous sibling is", node.previous);
        }
    }

    bool isSibling(const Node& node, std::uint32_t NodeRecord::*there, std::uint32_t NodeRecord::*back,
                   std::uint32_t id) const {
        const auto* sibling = find(node.*there);
        return sibling != nullptr && sibling->parent == node.parent && sibling->*back == id && id != 1;
    }

    // Ids ascend along a chain of siblings, so if the ends are right too, all children of a node are in one
    // chain.
    void checkEnds(std::uint32_t id) {
        const auto& node = nodes_[id - 1];
        const auto* parent = find(node.parent);
        if (parent == nullptr) {
            return;
        }
        if (node.previous == 0) {
            require(parent->firstChild == id, RuleId::Children, node.parent, "its first child is not", id);
        }
        if (node.next == 0) {
            require(parent->lastChild == id, RuleId::Children, node.parent, "its last child is not", id);
        }
    }

    void checkChildren(std::uint32_t id) {
        const auto& node = nodes_[id - 1];
        const auto isEnd = [&](std::uint32_t child, std::uint32_t NodeRecord::*beyond) {
            const auto* end = find(child);
            return child == 0 || (end != nullptr && end->parent == id && end->*beyond == 0);
        };
        require(isEnd(node.firstChild, &NodeRecord::previous), RuleId::Children, id, "its first child is",
                node.firstChild);
        require(isEnd(node.lastChild, &NodeRecord::next), RuleId::Children, id, "its last child is",
                node.lastChild);
    }

    void checkNames() {
        std::set<std::pair<std::uint32_t, std::string_view>> known;
        for (std::uint32_t id = 2; id <= nodes_.size(); ++id) {
            const auto& node = nodes_[id - 1];
            if (!known.emplace(node.parent, node.name).second) {
                findings_.add(RuleId::SiblingNames,
                              fmt::format("another \"{}\" beside it", visibleText(node.name)), {.node = id});
            }
        }
    }

    const std::vector<Node>& nodes_;
    FindingList& findings_;
};

} // namespace

void checkTree(const std::vector<Node>& nodes, FindingList& findings) {
    TreeCheck(nodes, findings).run();
}

} // namespace MoxTool
