#include <Qel/Mox/ChildIndex.h>

#include <Qel/Mox/Node.h>

#include <cstdint>
#include <functional>

namespace QelMox {

namespace {

// The multiplier is 2^64 divided by the golden ratio, which spreads consecutive ids.
std::size_t hashOf(unsigned int parent, std::string_view name) {
    return std::hash<std::string_view>()(name) ^ static_cast<std::size_t>(parent * 0x9E3779B97F4A7C15ULL);
}

// Each class has a type name and a version of its own, so it stands for both.
bool isOfClass(const Node& node, const std::type_info& nodeClass) {
    return typeid(node) == nodeClass;
}

} // namespace

unsigned int ChildIndex::Find(unsigned int parent, std::string_view name) {
    return Search(parent, name, [](const Node&) { return true; });
}

unsigned int ChildIndex::Find(unsigned int parent, std::string_view name, const std::type_info& nodeClass) {
    return Search(parent, name, [&](const Node& node) { return isOfClass(node, nodeClass); });
}

template <typename Predicate>
unsigned int ChildIndex::Search(unsigned int parent, std::string_view name, Predicate accepts) {
    if (parent == 0 || parent > nodes_.size() || NodeOf(parent).firstChild == 0) {
        return 0;
    }
    const TreeNode& first = NodeOf(NodeOf(parent).firstChild);
    if (first.data->GetName() == name && accepts(*first.data)) {
        return first.id;
    }
    TakeUpNewNodes();
    return OldestOfTable(hashOf(parent, name), parent, name, accepts);
}

void ChildIndex::TakeUpNewNodes() {
    for (; taken_ < nodes_.size(); ++taken_) {
        if (nodes_[taken_].previous != 0) {
            TakeUp(nodes_[taken_]);
        }
    }
}

void ChildIndex::TakeUp(const TreeNode& child) {
    const std::string_view name = child.data->GetName();
    const std::size_t hash = hashOf(child.parent, name);
    const auto isAlike = [&](const Node& other) { return isOfClass(other, typeid(*child.data)); };
    if (OldestOfTable(hash, child.parent, name, isAlike) == 0) {
        ids_.Add(hash, child.id);
    }
}

template <typename Predicate>
unsigned int ChildIndex::OldestOfTable(std::size_t hash, unsigned int parent, std::string_view name,
                                       Predicate accepts) const {
    unsigned int oldest = 0;
    ids_.Visit(hash, [&](std::uint32_t id) {
        const TreeNode& child = NodeOf(id);
        if (child.parent == parent && child.data->GetName() == name && accepts(*child.data) &&
            (oldest == 0 || id < oldest)) {
            oldest = id;
        }
    });
    return oldest;
}

} // namespace QelMox
