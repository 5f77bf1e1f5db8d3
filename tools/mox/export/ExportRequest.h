#pragma once

#include "../common/StepChoice.h"

#include <string>
#include <vector>

namespace MoxTool {

/// What `mox export` is asked to do.
struct ExportRequest {
    std::string input;
    std::string output;             ///< "-" for stdout.
    std::vector<std::string> parts; ///< The paths of the nodes to take, with all below them; empty for all.
    std::vector<std::string> datasets; ///< Patterns for the names of the results to take; empty for all.
    StepChoice step;                   ///< The steps to take; not made for all.
    bool noLimit = false;              ///< Numbers that are shared may multiply without limit.
    bool overwrite = false;            ///< An existing output is replaced, once the new one is whole.

    bool isToStandardOutput() const { return output == "-"; }
    /// The output, for messages.
    std::string shownOutput() const { return isToStandardOutput() ? "stdout" : output; }
};

} // namespace MoxTool
