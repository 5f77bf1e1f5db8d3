#pragma once

#include "../../common/ConversionSummary.h"
#include "ResultDataset.h"

#include <vector>

namespace MoxTool {

/// Notes which results could not keep their names.
void noteRenamed(const std::vector<ResultDataset>& results, ConversionSummary& summary);

} // namespace MoxTool
