#pragma once

#include "MoxReader/File.h"

namespace MoxFuzz {

/// Reads all that a file has: each stream by itself, the model, and the numbers of each dataset and each node of
/// sets, the latter up to a limit, since many datasets may share one range.
/// @throws MoxReader::Error  if the model can't be read.
void readAll(const MoxReader::File& file);

} // namespace MoxFuzz
