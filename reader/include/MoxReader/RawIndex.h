#pragma once

#include "MoxReader/BlockRecord.h"
#include "MoxReader/Error.h"
#include "MoxReader/Source.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace MoxReader {

/// One index table of the chain.
struct IndexTable {
    std::uint64_t position = 0;             ///< File offset of its record count.
    std::uint32_t count = 0;                ///< Records, as stored.
    std::uint64_t firstId = 0;              ///< Block id of its first record.
    std::optional<std::uint64_t> blockId{}; ///< The Index Block that holds it; empty for the head index.
    /// How many bytes its blocks lie below the places that the lengths of all blocks before them add up to.
    /// Not 0 if a single array filled the block before an Index Block: the writer then took that Index Block
    /// to lie at offset 0 and placed the following blocks from there, over others.
    std::uint64_t displacement = 0;
};

/// The front of a file and its index exactly as stored, as far as they can be followed.
struct RawIndex {
    std::uint64_t fileSize = 0;                                     ///< In bytes.
    std::array<std::uint8_t, Format::Signature.size()> signature{}; ///< The first bytes of the file.
    std::string version;                                            ///< Up to its NUL.
    std::optional<std::uint32_t> headLength;                        ///< Empty if the file ends before it.
    std::vector<IndexTable> tables;  ///< In the order of the chain; the head index is the first.
    std::vector<BlockRecord> blocks; ///< All records in id order, Index Blocks and empty entries included.
    std::uint64_t end = 0;           ///< The end of the last block or table; a sound file ends there too.
    std::vector<Error> damage;       ///< In order of discovery. Nothing after a broken table is found.

    /// Whether blocks lie where the writer did not intend. Those that are not overwritten can be read.
    bool isDisplaced() const;
};

/// Reads the front of a file and walks the chain of index tables. Damage is noted, not thrown.
///
/// Blocks that reach past the end of the file are listed like all others and do not count as damage of the
/// index.
/// @throws Error  ReadFailed alone.
/// @par Cost
/// One read for each table, and one of four bytes for each compressed block. Each table describes ids that
/// follow those of the one before it, and its bytes are in the file, so the walk ends. If the file has
/// exactly the size that displaced blocks would give it, the blocks of the last table that are not "Heavy
/// Data" are decompressed to see whether they are displaced.
RawIndex scanIndex(Source& source);

} // namespace MoxReader
