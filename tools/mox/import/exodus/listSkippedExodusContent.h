#pragma once

#include "../../common/ConversionSummary.h"
#include "../../exodus/ExodusFile.h"

namespace MoxTool {

/// Notes in the summary all that an Exodus file has and a model can't take: sets, maps, edge and face blocks,
/// element attributes, global and set variables, assemblies, records, and whatever else stands in the file.
///
/// @throws Failure if the file is damaged.
void listSkippedExodusContent(const ExodusFile& file, ConversionSummary& summary);

} // namespace MoxTool
