#pragma once

#include "FindingList.h"

#include <MoxReader/File.h>

#include <functional>
#include <set>

namespace MoxTool {

/// Called with the fraction of the work that is done, from 0 to 1.
using CheckProgress = std::function<void(double)>;

/// Adds the ids of the blocks that a stream has read without damage so far.
void addSoundBlocks(std::set<std::uint64_t>& ids, const MoxReader::StreamReader& stream);

/// Decompresses every block that is not known to be sound, one at a time, and compares its length and its
/// checksum.
/// @param sound The ids of blocks that have been read without damage.
/// @throws MoxReader::Error with ReadFailed only.
void checkBlocks(const MoxReader::File& file, const std::set<std::uint64_t>& sound, FindingList& findings,
                 const CheckProgress& progress);

} // namespace MoxTool
