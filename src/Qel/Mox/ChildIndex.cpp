#include <Qel/Mox/ChildIndex.h>

#include <Qel/Mox/Node.h>
#include <Qel/Mox/NodePolicies.h>

#include <algorithm>
#include <functional>

namespace QelMox {

// The multiplier is 2^64 divided by the golden ratio, which spreads consecutive ids.
std::size_t ChildIndex::KeyHash::operator()(const Key& key) const {
    return std::hash<std::string_view>()(key.second) ^
           static_cast<std::size_t>(key.first * 0x9E3779B97F4A7C15ULL);
}

void ChildIndex::Add(unsigned int parent, unsigned int id, const Node& node) {
    if (FindLike(parent, node) == 0) {
        children_.emplace(Key(parent, node.GetName()), Child{id, &node});
    }
}

void ChildIndex::Remove(unsigned int parent, unsigned int id, const Node& node) {
    const auto [first, last] = children_.equal_range(Key(parent, node.GetName()));
    const auto match = std::find_if(first, last, [&](const auto& entry) { return entry.second.id == id; });
    if (match != last) {
        children_.erase(match);
    }
}

unsigned int ChildIndex::Find(unsigned int parent, std::string_view name) const {
    const auto [first, last] = children_.equal_range(Key(parent, name));
    const auto oldest = std::min_element(
        first, last, [](const auto& left, const auto& right) { return left.second.id < right.second.id; });
    return oldest == last ? 0 : oldest->second.id;
}

unsigned int ChildIndex::FindLike(unsigned int parent, const Node& probe) const {
    const auto [first, last] = children_.equal_range(Key(parent, probe.GetName()));
    const auto match = std::find_if(
        first, last, [&](const auto& entry) { return NodesWithSameName()(entry.second.node, &probe); });
    return match == last ? 0 : match->second.id;
}

} // namespace QelMox
