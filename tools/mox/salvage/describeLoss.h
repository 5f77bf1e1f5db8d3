#pragma once

#include "SalvagedBlock.h"

#include <MoxReader/RawIndex.h>

#include <string>
#include <vector>

namespace MoxTool {

/// What of a file is lost, one line for each thing, fit for a terminal. With an index this counts the blocks
/// of each stream that were not saved whole; without one it tells what can't be there or can't be told.
/// @param saved In the order of the file.
std::vector<std::string> describeLoss(const MoxReader::RawIndex& index,
                                      const std::vector<SalvagedBlock>& saved);

} // namespace MoxTool
