#pragma once

#include "ModelSteps.h"

#include <string>
#include <vector>

namespace MoxTool {

// Steps for display. They are named by their numbers, from 1; a name shows too if it says more than that.

/// Such as: 3 @0.25, or 6 "Mode 1" @84.2 if that is the name of the sixth.
std::string stepText(const ModelSteps& steps, std::size_t place);

/// Such as: 1 to 5, 9. Only the first and the last of steps in many ranges, and how many they are.
/// @param places Ascending, at least one; from 0.
std::string stepRangesText(const std::vector<std::size_t>& places);

/// One or several steps, such as: step 3 @0.25, or: steps 6 to 11 ("Mode 1" to "Mode 6").
/// @param places Ascending, at least one; from 0.
std::string stepsText(const ModelSteps& steps, const std::vector<std::size_t>& places);

} // namespace MoxTool
