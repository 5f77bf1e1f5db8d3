#pragma once

/// The names of datasets that mean something to a mesh.
namespace MoxTool::DatasetNames {

// The mesh of a geometry.
inline constexpr const char* Coordinates = "Coordinates";
inline constexpr const char* Connectivity = "Connectivity";
inline constexpr const char* Polylength = "Polylength";
inline constexpr const char* NodeIds = "Node Ids";
inline constexpr const char* ElementIds = "Element IDs";
/// A part's list of elements. Its type is that of a connectivity.
inline constexpr const char* PartElements = "Part Elements";

/// The result that moves the mesh. If it has six columns, the last three are rotations.
inline constexpr const char* Displacement = "Displacement";

} // namespace MoxTool::DatasetNames
