#pragma once

#include "../common/StepChoice.h"

#include <string>

namespace MoxTool {

/// What `mox export` is asked to do.
struct ExportRequest {
    std::string input;
    std::string output;     ///< Its extension decides the format.
    StepChoice step;        ///< The steps to take; not made for all.
    bool noLimit = false;   ///< Numbers that are shared may multiply without limit.
    bool overwrite = false; ///< An existing output is replaced, once the new one is whole.
};

} // namespace MoxTool
