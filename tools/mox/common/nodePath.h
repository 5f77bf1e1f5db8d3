#pragma once

#include <MoxReader/Model.h>

#include <cstdint>
#include <string>

namespace MoxTool {

// A node's path: for each level from the root down, the separator and the node's name, such as "/root/part".
// The geometry of a shape shares the path of its shape.

/// The geometry that a node's path stands for: the node itself if it is a geometry, the first child of a
/// shape if that is a geometry, null for any other node.
const MoxReader::Node* geometryOf(const MoxReader::Model& model, const MoxReader::Node& node);

/// The path of a node, for display: siblings of one name have the same. If it is longer than 4096 bytes, only
/// its end is given, after "...", since a tree can nest so deeply that all paths together are far larger than
/// their file.
/// @throws MoxReader::Error NoSuchNode
std::string nodePath(const MoxReader::Model& model, std::uint32_t id, const std::string& separator = "/");

/// The node at a path; the first among siblings of one name. A shape's path gives the shape, and its geometry
/// can also be named explicitly, as in "/root/part/part".
/// @param separator Precedes each name; not empty. A name that contains it is never found.
/// @return null if there is no such node.
const MoxReader::Node* findNode(const MoxReader::Model& model, const std::string& path,
                                const std::string& separator = "/");

} // namespace MoxTool
