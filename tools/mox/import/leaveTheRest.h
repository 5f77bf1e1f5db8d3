#pragma once

#include "ExodusFile.h"
#include "ImportSummary.h"

namespace MoxTool {

/// Notes in the summary all that an Exodus file has and a model can't take: sets, maps, edge and face blocks,
/// element attributes, global and set variables, assemblies, records, and whatever else stands in the file.
///
/// @throws Failure if the file is damaged.
void leaveTheRest(const ExodusFile& file, ImportSummary& summary);

} // namespace MoxTool
