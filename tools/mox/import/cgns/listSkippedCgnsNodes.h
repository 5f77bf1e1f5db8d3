#pragma once

#include "../../common/ConversionSummary.h"
#include "CgnsFile.h"

namespace MoxTool {

/// Notes in the summary all nodes of bases and zones that a model can't take: families, boundary conditions,
/// connections of zones, further grids, units, and whatever else the file holds.
///
/// @throws Failure if the file is damaged.
void listSkippedCgnsNodes(const CgnsFile& file, ConversionSummary& summary);

} // namespace MoxTool
