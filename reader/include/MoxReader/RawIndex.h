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
};

/// The front of a file and its index as they stand, as far as they can be followed.
struct RawIndex {
    std::uint64_t fileSize = 0;
    std::array<std::uint8_t, Format::Signature.size()> signature{};
    std::string version;                     ///< Up to its NUL.
    std::optional<std::uint32_t> headLength; ///< Empty if the file ends before it.
    std::vector<IndexTable> tables;
    std::vector<BlockRecord> blocks; ///< All records in id order, Index Blocks and empty entries included.
    std::uint64_t end = 0;           ///< Where the last block ends; a sound file ends there as well.
    std::vector<Error> damage; ///< In order of discovery. What stands behind a broken table is not found.
};

/// Reads the front of a file and walks the chain of index tables. Damage is noted, not thrown.
///
/// Blocks that reach past the end of the file are listed like all others and are no damage of the index.
/// @throws Error  ReadFailed alone.
/// @par Cost
/// One read for each table, one of four bytes for each compressed block. Each table lies behind the one
/// before it, so the walk ends.
RawIndex scanIndex(Source& source);

} // namespace MoxReader
