#pragma once

#include "FindingList.h"

#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

/// Checks the ids of nodes and all six links between them, each node by itself, in one pass, and that
/// siblings have names of their own.
/// @param nodes In the order of the file; places in it, from 1, stand for the ids.
void checkTree(const std::vector<MoxReader::Node>& nodes, FindingList& findings);

/// The path of a node for a person, such as "/root/part"; of a deep one only its end, behind "...".
/// Goes up only as long as ids fall, so that it ends on any nodes.
std::string pathText(const std::vector<MoxReader::Node>& nodes, std::uint32_t id);

} // namespace MoxTool
