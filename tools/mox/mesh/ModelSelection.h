#pragma once

#include "../common/StepChoice.h"

#include <string>
#include <vector>

namespace MoxTool {

/// A model's file, and what the user wants of it.
struct ModelSelection {
    std::string input;
    std::vector<std::string> parts; ///< The paths of the nodes to take, with all below them; empty for all.
    std::vector<std::string> datasets; ///< Patterns for the names of the results to take; empty for all.
    StepChoice step;                   ///< The steps to take; not made for all.
    bool noLimit = false;              ///< Numbers that are shared may multiply without limit.
};

} // namespace MoxTool
