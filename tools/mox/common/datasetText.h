#pragma once

#include <MoxReader/Dataset.h>

#include <cstdint>
#include <string>

namespace MoxTool {

// The contents of a dataset's descriptor, in words.

/// Such as "NodeScalar"; "type 7" for a number without a known meaning.
std::string variableTypeText(const MoxReader::Dataset& dataset);
/// "float", "unsigned", or "element type 9" for a tag without a known meaning.
std::string elementTypeText(const MoxReader::Dataset& dataset);
/// @param holder The dataset that holds the numbers, so no link.
std::string shapeText(const MoxReader::Dataset& holder);
/// The number of its items; 0 for a width of 0.
std::uint32_t itemCount(const MoxReader::Dataset& holder);

} // namespace MoxTool
