#pragma once

#include "DatasetGroup.h"

#include <functional>

namespace MoxTool {

/// Groups the datasets of a geometry by name, type and numbers, in order of their first members. Datasets
/// without a step stay alone.
std::vector<DatasetGroup>
groupDatasets(const std::vector<const MoxReader::Dataset*>& datasets, const ModelSteps& steps,
              const std::function<NumbersText(const MoxReader::Dataset&)>& numbersOf);

} // namespace MoxTool
