#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace MoxTool {

/// A face of an element, by places among the element's nodes.
struct ElementFace {
    /// All nodes of its border, in order; of a solid, counter-clockwise as seen from outside. If it has nodes
    /// between the corners, corners and those alternate, beginning with a corner.
    std::vector<std::uint32_t> border;
    bool isQuadratic = false; ///< Whether it has nodes between its corners.
    std::optional<std::uint32_t> centre;

    std::size_t corners() const { return isQuadratic ? border.size() / 2 : border.size(); }
    std::uint32_t corner(std::size_t place) const { return border[isQuadratic ? 2 * place : place]; }
};

/// The faces of elements of two or three dimensions, whose nodes are in the order of Exodus. An element of two
/// dimensions is its own face. Empty if the shape is not known.
std::vector<ElementFace> elementFaces(int dimension, std::size_t nodes);

/// A polygon of any number of corners.
ElementFace polygonFace(std::size_t nodes);

} // namespace MoxTool
