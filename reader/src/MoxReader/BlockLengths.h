#pragma once

#include "MoxReader/BlockRecord.h"
#include "MoxReader/Node.h"

#include <cstdint>
#include <vector>

namespace MoxReader {

/// Gives the blocks of "Heavy Data" that have lost their content length, with their content, the one that
/// fits the arrays; see openHeavyStream().
/// @return whether any got one.
bool findLostLengths(std::vector<BlockRecord>& blocks, const std::vector<Node>& nodes,
                     std::uint64_t fileSize);

} // namespace MoxReader
