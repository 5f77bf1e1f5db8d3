#pragma once

#include "SalvagedBlock.h"

#include <MoxReader/RawIndex.h>

#include <string>
#include <vector>

namespace MoxTool {

/// What a file has lost, one line for each thing, fit for a terminal. With an index, this counts the blocks
/// of each stream that were not saved whole; without one, it says what is missing or can't be determined.
/// @param saved In the order of the file.
std::vector<std::string> describeLoss(const MoxReader::RawIndex& index,
                                      const std::vector<SalvagedBlock>& saved);

} // namespace MoxTool
