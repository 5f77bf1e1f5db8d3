#pragma once

#include "FindingList.h"

#include <MoxReader/LinkTable.h>
#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

/// The place of a dataset, for a finding.
FindingPlace placeOf(const MoxReader::Dataset& dataset);

/// Whether type, element type, width and size of a dataset that is no link fit each other, so that its
/// numbers can be read once they are found.
bool hasSoundShape(const MoxReader::Dataset& holder);

/// Checks every entry of every geometry by itself, its key among those beside it, and where its links lead.
/// @param nodes       With nodeId and index of each dataset set, by the node's place in this list.
/// @param areComplete Whether no dataset is missing; if one is, links that lead nowhere are no finding.
void checkDatasets(const std::vector<MoxReader::Node>& nodes, const MoxReader::LinkTable& links,
                   bool areComplete, FindingList& findings);

} // namespace MoxTool
