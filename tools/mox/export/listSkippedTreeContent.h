#pragma once

#include "../common/ConversionSummary.h"
#include "../mesh/ModelChoice.h"

#include <MoxReader/Model.h>

namespace MoxTool {

/// Notes what a mesh format can't take from the chosen parts of a model's tree: groups, sets of nodes,
/// materials, and the attributes that no export has a place for.
void listSkippedTreeContent(const MoxReader::Model& model, const ModelChoice& choice,
                            ConversionSummary& summary);

} // namespace MoxTool
