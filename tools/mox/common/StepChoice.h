#pragma once

#include "ModelSteps.h"

#include <string>
#include <vector>

namespace MoxTool {

/// The steps of a model that the user has chosen: a number from 1, a name, "@" and a time or frequency,
/// "first", "last", or a range of two of these such as "3:7" or "first:@0.5". A name takes precedence over
/// the other meanings of a text.
struct StepChoice {
    /// What the help says about the value of an option STEP.
    static constexpr const char* Syntax =
        "STEP is a number, a name, @TIME, first, last, or a range of two such as 3:7";

    std::string text; ///< From the command line; empty for no choice.

    bool isMade() const { return !text.empty(); }

    /// The places of the chosen steps, ascending; at least one.
    /// @param path The file, for messages.
    /// @throws Failure if the model has no such step, with a list of what it has.
    std::vector<std::size_t> resolve(const ModelSteps& steps, const std::string& path) const;
};

} // namespace MoxTool
