#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace MoxTool {

/// What can be seen of a mesh: the faces that only one element of a part has, cut into triangles, lines, and
/// single nodes. Its nodes and elements are numbered anew, from 0; everything it draws refers to these numbers.
struct Surface {
    /// Some of what is drawn, each with the element that it belongs to.
    struct Figures {
        std::vector<std::uint32_t> nodes;    ///< As many for each figure as it has corners.
        std::vector<std::uint32_t> elements; ///< One for each figure.
    };

    std::vector<std::uint32_t> nodes;    ///< Their places in the mesh, ascending.
    std::vector<std::uint32_t> elements; ///< Likewise; so the elements of a part stand together.
    std::vector<std::uint32_t> partEnds; ///< For each part of the mesh the end of its elements.
    Figures triangles;
    Figures edges;   ///< The borders of faces, each once in a part, in straight pieces.
    Figures outline; ///< Those edges at which the surface ends, branches or has a bend.
    Figures lines;   ///< Elements of one dimension, in straight pieces.
    Figures points;  ///< Elements of one node, and all nodes of elements of no known shape.
};

} // namespace MoxTool
