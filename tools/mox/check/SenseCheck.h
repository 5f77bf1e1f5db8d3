#pragma once

#include "FindingList.h"
#include "NumberFacts.h"

#include <MoxReader/LinkTable.h>
#include <MoxReader/Node.h>

#include <vector>

namespace MoxTool {

/// Checks what the numbers mean: that they are finite and that those of one geometry and step fit together.
/// Where a step has no coordinates, connectivity or polylength of its own, those without a step are used.
void checkSense(const std::vector<MoxReader::Node>& nodes, const MoxReader::LinkTable& links,
                const FactsByHolder& facts, FindingList& findings);

} // namespace MoxTool
