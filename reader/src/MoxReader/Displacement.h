#pragma once

#include "MoxReader/RawIndex.h"

namespace MoxReader {

// Blocks that lie too low in a file; see IndexTable::displacement. In all but settlePlaces() the blocks of an
// index have the places that the lengths add up to.

/// The displacement of a table's blocks if the writer took the table's Index Block to lie at offset 0; empty
/// if that is impossible because there are not datasets on both sides of it.
std::optional<std::uint64_t> findRestart(const RawIndex& index, const IndexTable& table);

/// Finds the displacement of a table's blocks from where the next table lies.
/// @param next The Index Block that holds the next table; it is one of the table's own blocks.
void settleByNextTable(Source& source, const RawIndex& index, IndexTable& table, const BlockRecord& next);

/// Finds the displacement of the last table's blocks from where the file ends and what can be decompressed.
void settleBySize(Source& source, RawIndex& index);

/// Finds the displacement of the last table's blocks if the chain breaks there: from the place at which the
/// first block that is inside the file at either place can be decompressed. In a file that is only cut, that
/// is the place that the lengths add up to.
void settleByBlocks(Source& source, RawIndex& index);

/// Moves all blocks to where they lie, finds those that were overwritten, and reads the content lengths of
/// the rest.
void settlePlaces(Source& source, RawIndex& index);

} // namespace MoxReader
