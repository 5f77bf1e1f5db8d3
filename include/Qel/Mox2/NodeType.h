#pragma once

namespace Qel::Mox2 {

/// What addNode() makes. Any of them can be the first node; below it only Group and Shape can stand.
enum NodeType : int {
    RootMarkedGroup = 1, ///< A group, as first node only, that the file marks with group kind 1.
    RootGroup = 2,       ///< A group, as first node only.
    Group = 3,           ///< A group: a transform and attributes for what stands below it.
    Shape = 4,           ///< A shape: a material, and below it (unless it is the first node) its geometry.
};

} // namespace Qel::Mox2
