#pragma once

namespace MoxTool {

/// The paragraph on paths in the help of every command that takes one; see NodePaths.
inline constexpr const char* PathHelp =
    R"(A PATH is "/" and a name for each level from the root on, such as /bracket/rib; that of a shape stands
for its geometry as well. In a name \/ stands for a slash and \\ for a backslash. "#12" is the node of id
12, and so is "/bracket/rib#12": mox prints this where several siblings have one name. Every path that mox
prints can be used again. Quote it for the shell.)";

} // namespace MoxTool
