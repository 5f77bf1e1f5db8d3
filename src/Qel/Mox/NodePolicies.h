#pragma once

namespace QelMox {

class Node;

/// Considers two nodes equal if their names, types and versions are. The ChildIndex compares names and classes, which
/// comes to the same: each class has a type and a version of its own.
struct NodesWithSameName {
    bool operator()(const Node* left, const Node* right) const;
};

/// Considers two nodes equal if their names are, so that a plain Node can serve as the probe of
/// QelAdt::Tree::MoveToChild(). Lookups by path don't come here: they ask the ChildIndex.
struct VirtualNodesWithSameName {
    bool operator()(const Node* left, const Node* right) const;
};

} // namespace QelMox
