#pragma once

#include <Qel/Adt/AdtTree.h>
#include <Qel/Util/HashTable.h>

#include <cstddef>
#include <deque>
#include <string_view>
#include <typeinfo>

namespace QelMox {

class Node;

/// Finds the children of a node by name in constant time, however large the tree. It takes up the nodes of the tree
/// when it is asked for one, so that a tree in which nothing is looked up needs no index.
class ChildIndex {
public:
    using Nodes = std::deque<QelAdt::TreeNode<Node*>>;

    /// @param nodes The nodes of a tree, which only grows and must live as long as the index. All of them except the
    ///              root have a payload.
    explicit ChildIndex(const Nodes& nodes) : nodes_(nodes) {}

    /// @return the id of the oldest child with this name, or 0.
    unsigned int Find(unsigned int parent, std::string_view name);

    /// @return the id of the oldest child with this name whose payload is of exactly this class, or 0.
    unsigned int Find(unsigned int parent, std::string_view name, const std::type_info& nodeClass);

private:
    using TreeNode = QelAdt::TreeNode<Node*>;

    template <typename Predicate>
    unsigned int Search(unsigned int parent, std::string_view name, Predicate accepts);
    void TakeUpNewNodes();
    void TakeUp(const TreeNode& child);
    template <typename Predicate>
    unsigned int OldestOfTable(std::size_t hash, unsigned int parent, std::string_view name,
                               Predicate accepts) const;
    const TreeNode& NodeOf(unsigned int id) const { return nodes_[id - 1]; }

    const Nodes& nodes_;
    std::size_t taken_ = 1; // The root is nobody's child.
    // The ids of all children but first ones, which their parents know; of those with the same parent, name and
    // class only the oldest.
    QelUtil::HashTable ids_;
};

} // namespace QelMox
