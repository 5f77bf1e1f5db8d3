#pragma once

#include "../common/NumberFile.h"
#include "NumberFormat.h"
#include "NumberTable.h"

#include <ostream>

namespace MoxTool {

/// Writes the numbers of one dataset.
/// @param out    Takes bytes as they are. Failures show in its state.
/// @param format Npy or Raw.
void writeNumbers(std::ostream& out, const NumberTable& table, NumberFormat format);

} // namespace MoxTool
