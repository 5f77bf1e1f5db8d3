#pragma once

#include "CgnsFile.h"
#include "ImportSummary.h"

namespace MoxTool {

/// Notes in the summary all nodes of bases and zones that a model can't take: families, boundary conditions,
/// connections of zones, further grids, units, and whatever else stands in the file.
///
/// @throws Failure if the file is damaged.
void leaveCgnsNodes(const CgnsFile& file, ImportSummary& summary);

} // namespace MoxTool
