#pragma once

#include <MoxReader/Model.h>

namespace MoxTool {

/// The geometry that a node stands for: the node itself if it is a geometry, the first child of a shape if
/// that is a geometry, null for any other node.
const MoxReader::Node* geometryOf(const MoxReader::Model& model, const MoxReader::Node& node);

} // namespace MoxTool
