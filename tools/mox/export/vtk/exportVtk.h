#pragma once

#include "../../common/ConversionSummary.h"
#include "../ExportRequest.h"

namespace MoxTool {

class Terminal;

// Both write a model in VTK's XML formats and return what was taken and what was not. They throw Failure if
// the input can't be read or the output can't be written; whatever has the output's name is then unchanged.

/// One mesh in one .vtu file.
/// @throws Failure also if the model has several steps and none is chosen.
ConversionSummary exportVtu(const ExportRequest& request);

/// A .pvd file and, beside it, a folder named after it, with "_steps" instead of the extension, with a .vtu
/// file for each step.
/// @param terminal Shows the progress.
ConversionSummary exportPvd(const ExportRequest& request, Terminal& terminal);

} // namespace MoxTool
