#pragma once

#include <MoxReader/Dataset.h>

#include <string>

namespace MoxTool {

/// The name of a dataset, and the step's if it has one, such as: Temperature, step "Step 1". Fit for a terminal.
///
/// Files that are joined number their steps differently, so a step is named.
std::string titleByStepName(const MoxReader::Dataset& dataset);

} // namespace MoxTool
