#pragma once

#include "../ImportRequest.h"

namespace MoxTool {

/// @throws Failure if the output is an input.
void refuseToReplaceInput(const ImportRequest& request);

} // namespace MoxTool
