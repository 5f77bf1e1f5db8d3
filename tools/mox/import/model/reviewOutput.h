#pragma once

#include "../ImportRequest.h"

#include <string>

namespace MoxTool {

class Terminal;

/// Makes sure that a file that an import has saved is whole, and has no error where the request asks for a check.
/// @param path Where it is; messages name the output of the request.
/// @throws Failure if it is not.
void reviewOutput(const std::string& path, const ImportRequest& request, Terminal& terminal);

} // namespace MoxTool
