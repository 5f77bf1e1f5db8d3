#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace MoxTool {

/// What other formats call elements of one topological dimension and number of nodes.
struct ElementShape {
    int dimension;     ///< 1 for lines and single nodes, 2 for faces, 3 for solids.
    std::size_t nodes; ///< 0 for elements of any number.
    const char* exodusType;
    const char* planarType; ///< The Exodus type in a model of two dimensions.
    std::uint8_t vtkCell;
    /// The node of the element for each node of the VTK cell; empty if the orders are the same.
    std::span<const std::uint8_t> vtkOrder{};
};

/// The shape of elements with these nodes; null if there is none.
const ElementShape* findElementShape(int dimension, std::size_t nodes);

/// Faces, each with its own number of nodes.
extern const ElementShape PolygonShape;
/// Elements of which only the nodes are known.
extern const ElementShape UnknownShape;

} // namespace MoxTool
