#pragma once

#include "FindingList.h"

#include <MoxReader/File.h>

#include <functional>
#include <set>

namespace MoxTool {

/// Called with the fraction of the work that is done, from 0 to 1.
using CheckProgress = std::function<void(double)>;

/// Decompresses every block, one at a time, and compares its length and its checksum.
/// @return the ids of the damaged blocks.
/// @throws MoxReader::Error with ReadFailed only.
std::set<std::uint64_t> checkBlocks(const MoxReader::File& file, FindingList& findings,
                                    const CheckProgress& progress);

} // namespace MoxTool
