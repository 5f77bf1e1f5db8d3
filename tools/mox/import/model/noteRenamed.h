#pragma once

#include "ImportSummary.h"
#include "ResultDataset.h"

#include <vector>

namespace MoxTool {

/// Notes which results could not keep their names.
void noteRenamed(const std::vector<ResultDataset>& results, ImportSummary& summary);

} // namespace MoxTool
