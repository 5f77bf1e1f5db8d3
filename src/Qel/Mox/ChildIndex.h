#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace QelMox {

class Node;

/// Finds the children of a node by name in constant time, however large the tree. If several children have
/// the same name and class, it knows the oldest.
class ChildIndex {
public:
    /// Must be called in ascending order of ids. The node must live as long as the index.
    void Add(unsigned int parent, unsigned int id, const Node& node);

    /// Undoes the add() of this id.
    void Remove(unsigned int parent, unsigned int id, const Node& node);

    /// @return the id of the oldest child with this name, or 0.
    unsigned int Find(unsigned int parent, std::string_view name) const;

    /// @return the id of the oldest child with the probe's name, type and version, or 0.
    unsigned int FindLike(unsigned int parent, const Node& probe) const;

private:
    struct Child {
        unsigned int id;
        const Node* node;
    };
    using Key = std::pair<unsigned int, std::string_view>;
    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };

    // Under each key, at most one child of each class. The names are views of the names in the nodes.
    std::unordered_multimap<Key, Child, KeyHash> children_;
};

} // namespace QelMox
