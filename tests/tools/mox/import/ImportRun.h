#pragma once

#include "../common/MoxRun.h"

#include <string>
#include <vector>

/// Runs `mox import` with these arguments.
inline MoxRun runImport(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "import");
    return runMox(arguments);
}
