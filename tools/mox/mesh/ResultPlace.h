#pragma once

#include <MoxReader/Dataset.h>

namespace MoxTool {

/// What the numbers of a dataset belong to.
enum class ResultPlace { Nodes, Elements, Nowhere };

/// Nowhere for a dataset that is not a result on nodes or elements.
ResultPlace resultPlaceOf(const MoxReader::Dataset& dataset);

} // namespace MoxTool
