#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace QelMox {

class Node;

/// Finds the children of a node by name in constant time, however large the tree. Of several children of one
/// name and class it knows the oldest.
class ChildIndex {
public:
    /// Must be called in ascending order of ids. The node must live as long as the index.
    void add(unsigned int parent, unsigned int id, const Node& node);

    /// Undoes the add() of this id.
    void remove(unsigned int parent, unsigned int id, const Node& node);

    /// @return the id of the oldest child of this name, or 0.
    unsigned int find(unsigned int parent, std::string_view name) const;

    /// @return the id of the oldest child of the probe's name, type and version, or 0.
    unsigned int findLike(unsigned int parent, const Node& probe) const;

private:
    struct Child {
        unsigned int id;
        const Node* node;
    };
    using Key = std::pair<unsigned int, std::string_view>;
    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };

    // One child of each class at most under a key. The names are views of the nodes' own.
    std::unordered_multimap<Key, Child, KeyHash> children_;
};

} // namespace QelMox
