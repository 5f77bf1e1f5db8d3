#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace MoxTool {

/// The topological dimension of an Exodus element type: 1 for lines and for single nodes, 2 for faces, 3 for
/// solids.
///
/// Upper and lower case are the same, and a number behind the name (HEX8) does not matter. A shell of two
/// nodes, or of three in a two-dimensional model, is a line. A type that is not known is taken for a point if
/// its elements have one node.
///
/// @param type            As in the file, such as "hex8".
/// @param nodesPerElement Decides for shells and unknown types alone.
/// @param modelDimension  Of the whole model, from 1 to 3.
/// @return nothing for a type that a model can't take: NFACED, and what is not known.
std::optional<int> elementDimension(const std::string& type, std::int64_t nodesPerElement,
                                    int modelDimension);

/// Whether the elements of a type are polygons, each with its own number of nodes: NSIDED.
bool isNsided(const std::string& type);

} // namespace MoxTool
