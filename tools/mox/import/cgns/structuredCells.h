#pragma once

#include "../model/ElementTable.h"
#include "CgnsFile.h"

namespace MoxTool {

/// The cells of a structured zone as lines, quadrilaterals or hexahedra, with ids from 1; the first index
/// runs fastest.
/// @param zone Structured, with at most 2,147,483,647 vertices.
ElementTable structuredCells(const CgnsZone& zone);

} // namespace MoxTool
