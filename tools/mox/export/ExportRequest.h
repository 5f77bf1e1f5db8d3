#pragma once

#include "../mesh/ModelSelection.h"

#include <string>

namespace MoxTool {

/// What `mox export` is asked to do.
struct ExportRequest : ModelSelection {
    std::string output;     ///< "-" for stdout.
    bool overwrite = false; ///< An existing output is replaced, once the new one is whole.

    bool isToStandardOutput() const { return output == "-"; }
    /// The output, for messages.
    std::string shownOutput() const { return isToStandardOutput() ? "stdout" : output; }
};

} // namespace MoxTool
