#pragma once

#include "FindingList.h"

#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

/// Checks the ids of nodes and all six links between them, each node by itself and in one pass, and that
/// siblings have distinct names.
/// @param nodes In the order of the file; the place of a node in it, from 1, stands for its id.
void checkTree(const std::vector<MoxReader::Node>& nodes, FindingList& findings);

} // namespace MoxTool
