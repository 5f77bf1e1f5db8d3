#pragma once

#include "FindingList.h"

#include <MoxReader/RawIndex.h>

namespace MoxTool {

/// Checks the front of a file, its index tables and each of their records, without looking into the blocks.
void checkIndex(const MoxReader::RawIndex& index, FindingList& findings);

} // namespace MoxTool
