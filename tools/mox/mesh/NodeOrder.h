#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace MoxTool {

/// For each node of an Exodus element the place of the same node in an element of another format; empty if
/// both count the nodes alike, or if Exodus has no such element.
///
/// A model keeps the nodes of all elements in the order of Exodus, whatever file they came from.
using NodeOrder = std::span<const std::uint8_t>;

/// @param elementType Gmsh's number of the type, such as 11 for the tetrahedron of 10 nodes.
NodeOrder gmshNodeOrder(int elementType);

/// @param nodes The number of nodes of a solid element. CGNS differs only for 27 nodes.
NodeOrder cgnsSolidNodeOrder(int nodes);

/// Puts the nodes of all elements into the order of Exodus.
/// @param connectivity Element by element, each with as many nodes as the order has; any if that is empty.
void reorderNodes(std::vector<unsigned int>& connectivity, NodeOrder order);

} // namespace MoxTool
