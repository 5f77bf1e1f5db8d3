#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace MoxTool {

/// The type of elements by the name that an Exodus file gives it, such as "hex8". Case does not matter, nor
/// does a number after the name.
class ElementType {
public:
    explicit ElementType(const std::string& typeName);

    /// The topological dimension: 1 for lines and for single nodes, 2 for faces, 3 for solids.
    ///
    /// A shell of two nodes, or of three in a two-dimensional model, is a line. An unknown type is taken for
    /// a point if its elements have one node.
    ///
    /// @param nodesPerElement Matters only for shells and unknown types.
    /// @param modelDimension  The dimension of the whole model, from 1 to 3.
    /// @return nothing for a type that a model can't take: NFACED and unknown ones.
    std::optional<int> dimension(std::int64_t nodesPerElement, int modelDimension) const;

    /// Whether the elements are polygons, each with its own number of nodes: NSIDED.
    bool isNsided() const;

private:
    bool isLineShell(std::int64_t nodesPerElement, int modelDimension) const;

    std::string name_; // in lower case, without the number
};

} // namespace MoxTool
