#pragma once

#include "../common/NumberFile.h"
#include "NumberFormat.h"

#include <cstdint>
#include <ostream>

namespace MoxTool {

/// Writes the numbers of one dataset.
/// @param out   Takes bytes as they are. Failures show in its state.
/// @param width Components of each item; 0 only without numbers.
void writeNumbers(std::ostream& out, const Numbers& numbers, std::uint8_t width, NumberFormat format);

} // namespace MoxTool
