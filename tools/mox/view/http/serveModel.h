#pragma once

#include "../../mesh/ModelSelection.h"

namespace MoxTool {

class Terminal;

/// Shows a model to browsers on this machine until the process is ended.
/// @param open Whether a browser is to be opened.
/// @throws Failure if the model can't be read or no port be had, or without the library for it.
[[noreturn]] void serveModel(const ModelSelection& selection, bool open, Terminal& terminal);

} // namespace MoxTool
