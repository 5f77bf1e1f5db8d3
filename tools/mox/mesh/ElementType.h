#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace MoxTool {

/// The type of elements by the name that an Exodus file gives it, such as "hex8". Upper and lower case are
/// the same, and a number behind the name does not matter.
class ElementType {
public:
    explicit ElementType(const std::string& typeName);

    /// The topological dimension: 1 for lines and for single nodes, 2 for faces, 3 for solids.
    ///
    /// A shell of two nodes, or of three in a two-dimensional model, is a line. A type that is not known is
    /// taken for a point if its elements have one node.
    ///
    /// @param nodesPerElement Decides for shells and unknown types alone.
    /// @param modelDimension  Of the whole model, from 1 to 3.
    /// @return nothing for a type that a model can't take: NFACED, and what is not known.
    std::optional<int> dimension(std::int64_t nodesPerElement, int modelDimension) const;

    /// Whether the elements are polygons, each with its own number of nodes: NSIDED.
    bool isNsided() const;

private:
    bool isLineShell(std::int64_t nodesPerElement, int modelDimension) const;

    std::string name_; // in small letters, without the number
};

} // namespace MoxTool
