#pragma once

#include <MoxReader/Dataset.h>

namespace MoxTool {

/// Where the numbers of a dataset stand.
enum class ResultPlace { Nodes, Elements, Nowhere };

/// Nowhere for what is no result on nodes or elements.
ResultPlace resultPlaceOf(const MoxReader::Dataset& dataset);

} // namespace MoxTool
