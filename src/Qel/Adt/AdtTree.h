#pragma once

#include <Qel/Exception/Throw.h>

#include <algorithm>
#include <deque>

namespace QelAdt {

/// A node of a Tree: the ids of its relatives, where 0 means none, and its payload.
template <typename T>
struct TreeNode {
    unsigned int id = 0;
    unsigned int parent = 0;
    unsigned int previous = 0; ///< The sibling that was added before this one.
    unsigned int next = 0;     ///< The sibling that was added after this one.
    unsigned int firstChild = 0;
    unsigned int lastChild = 0;
    T data{};
};

/// A tree that is built through a cursor: a new node is a child of the current node and becomes current.
///
/// Ids count up from 1, the root, in order of creation; no node is ever removed. References to nodes stay
/// valid. Payloads that are pointers are not owned.
template <typename T>
class Tree {
public:
    static constexpr unsigned int RootId = 1;

    /// A tree of a root without payload, which is current.
    Tree() { nodes_.push_back({.id = RootId}); }

    /// @throws Qel::Exception::KeyNotFound if there is no such id.
    const TreeNode<T>& GetReqNode(const unsigned int& id) const {
        if (!Contains(id)) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        return nodes_[id - RootId];
    }

    /// @throws Qel::Exception::KeyNotFound if no node has the current id.
    TreeNode<T>& GetCurrentNode() {
        if (!Contains(currentId_)) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        return nodes_[currentId_ - RootId];
    }

    /// Moves the cursor. Id 0 is accepted, but the next use of the cursor fails.
    /// @throws Qel::Exception::KeyNotFound for an id that no node has been given.
    void SetCurrentId(unsigned int id) {
        if (id >= nextId_) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        currentId_ = id;
    }

    /// Adds a child without payload after the current node's last child, and makes it current.
    /// @throws Qel::Exception::KeyNotFound if no node has the current id; nothing changes.
    void AddChild() {
        TreeNode<T>& parent = GetCurrentNode();
        nodes_.push_back({.id = nextId_, .parent = currentId_, .previous = parent.lastChild});
        if (parent.lastChild != 0) {
            nodes_[parent.lastChild - RootId].next = nextId_;
        } else {
            parent.firstChild = nextId_;
        }
        parent.lastChild = nextId_;
        currentId_ = nextId_;
        ++nextId_;
    }

    /// Moves to the oldest child of the current node whose payload the policy finds equal to the probe. The
    /// policy is asked about all nodes of the tree up to the match, and must accept the payload of each.
    /// @throws Qel::Exception::KeyNotFound if there is none; the cursor stays where it is.
    // Kept though nothing calls it; see docs/oddities.md.
    template <typename Policy>
    void MoveToChild(const T& probe, Policy policy) {
        const auto match = std::ranges::find_if(nodes_, [&](const TreeNode<T>& node) {
            return policy(node.data, probe) && node.parent == currentId_;
        });
        if (match == nodes_.end()) {
            QEL_THROW(Qel::Exception::KeyNotFound());
        }
        currentId_ = match->id;
    }

    unsigned int GetCurrentId() const { return currentId_; }
    /// Moves the cursor without any check.
    void PutCurrentId(unsigned int id) { currentId_ = id; }
    /// The id that the next node gets.
    unsigned int GetNextId() const { return nextId_; }
    /// All nodes in ascending id.
    const std::deque<TreeNode<T>>& GetNodes() const { return nodes_; }

private:
    bool Contains(unsigned int id) const { return id >= RootId && id < nextId_; }

    // In ascending order of ids, which start at 1 and have no gaps.
    std::deque<TreeNode<T>> nodes_;
    unsigned int nextId_ = RootId + 1;
    unsigned int currentId_ = RootId;
};

} // namespace QelAdt
