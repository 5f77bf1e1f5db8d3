#pragma once

namespace Qel::Mox2 {

/// What addNode() makes. Any of them can be the first node; below it, only Group and Shape are allowed.
enum NodeType : int {
    RootMarkedGroup = 1, ///< A group, only as the first node, that the file marks with group kind 1.
    RootGroup = 2,       ///< A group, only as the first node.
    Group = 3,           ///< A group: a transform and attributes for everything below it.
    Shape = 4,           ///< A shape: a material, and below it (unless it is the first node) its geometry.
};

} // namespace Qel::Mox2
