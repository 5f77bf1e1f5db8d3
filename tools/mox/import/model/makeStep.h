#pragma once

#include <Qel/Mox2/Step.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// Places, among the global variables of a file, of those that tell which mode of vibration a step is.
struct ModeVariables {
    std::size_t number;
    std::size_t frequency;
};

/// Recognises a file of mode shapes: it has a global variable ModeNumber or Mode and another one
/// EigenFrequency, NaturalFrequency or Frequency. Case and underscores do not matter.
std::optional<ModeVariables> findModeVariables(const std::vector<std::string>& globalVariables);

/// A mode of vibration.
struct Mode {
    double number;
    double frequency; ///< In the file's unit.
};

/// A step of the model: the name "Step 1", "Step 2" and so on, since times can repeat, and these attributes:
/// - "Time", a float, and "Time (exact)", the shortest text that gives the same double;
/// - for a mode moreover "Category" with the text "Vibration", "Mode", an integer, "Frequency", a float, and
///   "Frequency (exact)".
/// @param index From 0.
Qel::Mox2::Step makeStep(std::size_t index, double time, const std::optional<Mode>& mode);

} // namespace MoxTool
