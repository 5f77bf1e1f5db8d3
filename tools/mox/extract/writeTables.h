#pragma once

#include "NumberFormat.h"
#include "NumberTable.h"

#include <ostream>
#include <vector>

namespace MoxTool {

/// Writes tables side by side.
/// @param out    Takes bytes as they are. Failures show in its state.
/// @param tables All of the same number of rows; just one, unless the format is Csv.
/// @param header Whether a Csv begins with the names of the columns.
void writeTables(std::ostream& out, const std::vector<NumberTable>& tables, NumberFormat format, bool header);

} // namespace MoxTool
