#pragma once

#include "NumberTable.h"

#include <ostream>
#include <vector>

namespace MoxTool {

/// Writes tables side by side, as comma-separated values. Each number reads back equal. Names are
/// visibleText(); one with a comma or a quote stands in quotes, with each quote in it doubled.
/// @param out    Failures show in its state.
/// @param tables All of the same number of rows.
/// @param header Whether the first line has the names of the columns.
void writeCsv(std::ostream& out, const std::vector<NumberTable>& tables, bool header);

} // namespace MoxTool
