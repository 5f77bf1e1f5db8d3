#pragma once

#include "../common/StepChoice.h"
#include "Tolerance.h"

namespace MoxTool {

/// What counts as a difference of two models.
struct ComparisonOptions {
    Tolerance tolerance;
    StepChoice steps;   ///< Of the datasets that have steps, only those of these are compared.
    bool links = false; ///< Whether it counts that one dataset links to another.
    bool date = false;  ///< Whether the date of saving counts.
    /// Whether numbers that are shared may be compared in any number of pairs.
    bool noLimit = false;
};

} // namespace MoxTool
