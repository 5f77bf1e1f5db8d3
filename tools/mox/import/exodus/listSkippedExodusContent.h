#pragma once

#include "../../common/ConversionSummary.h"
#include "../../exodus/ExodusFile.h"

namespace MoxTool {

/// Notes in the summary everything in an Exodus file that a model can't take: sets, maps, edge and face
/// blocks, element attributes, global and set variables, assemblies, records, and whatever else the file
/// holds.
///
/// @throws Failure if the file is damaged.
void listSkippedExodusContent(const ExodusFile& file, ConversionSummary& summary);

} // namespace MoxTool
