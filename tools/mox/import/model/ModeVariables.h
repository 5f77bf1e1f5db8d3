#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace MoxTool {

/// Places, among the global variables of a file, of those that say which mode of vibration a step is.
struct ModeVariables {
    std::size_t number;
    std::size_t frequency;
};

/// Recognises a file of mode shapes: it has a global variable ModeNumber or Mode and another one
/// EigenFrequency, NaturalFrequency or Frequency. Case and underscores do not matter.
std::optional<ModeVariables> findModeVariables(const std::vector<std::string>& globalVariables);

} // namespace MoxTool
