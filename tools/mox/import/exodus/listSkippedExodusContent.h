#pragma once

#include "../../common/ConversionSummary.h"
#include "../../exodus/ExodusFile.h"

#include <string>

namespace MoxTool {

/// Notes in the summary everything in an Exodus file that a model can't take: sets, maps, edge and face
/// blocks, element attributes, global and set variables, assemblies, records, and whatever else the file
/// holds.
///
/// @param takenMap The name of further maps that are not to be noted, since their numbers were taken.
/// @throws Failure if the file is damaged.
void listSkippedExodusContent(const ExodusFile& file, ConversionSummary& summary,
                              const std::string& takenMap = {});

} // namespace MoxTool
