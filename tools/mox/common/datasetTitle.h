#pragma once

#include "ModelSteps.h"

#include <MoxReader/Dataset.h>

#include <string>

namespace MoxTool {

/// The name, and the step if it has one, such as: Temperature, step 1 @0.25. Fit for a terminal.
/// @param steps Of the dataset's model.
std::string datasetTitle(const MoxReader::Dataset& dataset, const ModelSteps& steps);

} // namespace MoxTool
