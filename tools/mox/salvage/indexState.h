#pragma once

#include <MoxReader/RawIndex.h>

namespace MoxTool {

bool hasDamage(const MoxReader::RawIndex& index, MoxReader::ErrorCode code);

/// Whether the writer never closed the file. The index then has no blocks.
bool isUnfinished(const MoxReader::RawIndex& index);

/// Whether a table of the index can't be read, so that there can be more blocks than it lists.
bool isIncomplete(const MoxReader::RawIndex& index);

} // namespace MoxTool
