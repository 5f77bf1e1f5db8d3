#pragma once

#include "../../common/ConversionSummary.h"
#include "../ExportRequest.h"

namespace MoxTool {

class Terminal;

/// Writes a model as an Exodus II file. In a build without the Exodus library it always fails and says so.
///
/// @param terminal Shows the progress.
/// @return what was taken and what was not.
/// @throws Failure if the input can't be read or the output can't be written. Whatever has the output's name
///                 is then unchanged.
ConversionSummary exportExodus(const ExportRequest& request, Terminal& terminal);

} // namespace MoxTool
