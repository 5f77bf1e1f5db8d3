#pragma once

#include "MoxReader/BlockRecord.h"
#include "MoxReader/Node.h"

#include <cstdint>
#include <vector>

namespace MoxReader {

/// Sets the content lengths of those blocks of "Heavy Data" that have lost theirs to what fits the arrays;
/// see openHeavyStream().
/// @return whether any block got a length.
bool findLostLengths(std::vector<BlockRecord>& blocks, const std::vector<Node>& nodes,
                     std::uint64_t fileSize);

} // namespace MoxReader
