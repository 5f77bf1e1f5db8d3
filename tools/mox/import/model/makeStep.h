#pragma once

#include "../../common/ModelSteps.h"

#include <Qel/Mox2/Step.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace MoxTool {

/// A mode of vibration.
struct Mode {
    double number;
    double frequency; ///< In the file's unit.
};

/// A step of the model: the name "Step 1", "Step 2" and so on, since times can repeat, and these attributes:
/// - "Time", a float, and "Time (exact)", the shortest text that gives the same double;
/// - for a mode also "Category" with the text "Vibration", "Mode", an integer, "Frequency", a float, and
/// "Frequency (exact)".
/// @param index From 0.
Qel::Mox2::Step makeStep(std::size_t index, double time, const std::optional<Mode>& mode);

/// The steps that makeStep() makes for these times, for the user to choose from.
ModelSteps stepsAt(const std::vector<double>& times);

} // namespace MoxTool
