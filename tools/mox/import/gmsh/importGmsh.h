#pragma once

#include "../../common/ConversionSummary.h"
#include "../ImportRequest.h"

namespace MoxTool {

class Terminal;

/// Converts a Gmsh mesh file. In a build without the Gmsh library it always fails and says so.
///
/// @param terminal Shows the progress.
/// @return what was taken and what was not.
/// @throws Failure if the input can't be read or taken, or the output can't be written. Whatever has the
///                 output's name is then unchanged.
ConversionSummary importGmsh(const ImportRequest& request, Terminal& terminal);

} // namespace MoxTool
