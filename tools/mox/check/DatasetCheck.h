#pragma once

#include "FindingList.h"

#include <MoxReader/LinkTable.h>
#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

/// The place of a dataset, for a finding.
FindingPlace placeOf(const MoxReader::Dataset& dataset);

/// Whether the type, element type, width and size of a dataset that is not a link fit together, so that its
/// numbers can be read once they are found.
bool hasSoundShape(const MoxReader::Dataset& holder);

/// Checks every entry of every geometry by itself, its key against the others, and the targets of its links.
/// @param nodes       The nodeId and index of each dataset are set, by the node's place in this list.
/// @param areComplete Whether no dataset is missing; if any is, links that lead nowhere are not reported.
void checkDatasets(const std::vector<MoxReader::Node>& nodes, const MoxReader::LinkTable& links,
                   bool areComplete, FindingList& findings);

} // namespace MoxTool
