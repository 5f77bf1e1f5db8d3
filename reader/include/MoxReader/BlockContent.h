#pragma once

#include "MoxReader/BlockRecord.h"
#include "MoxReader/Error.h"
#include "MoxReader/Source.h"

#include <optional>
#include <vector>

namespace MoxReader {

/// The result of reading a block.
struct BlockContent {
    std::vector<std::uint8_t> bytes; ///< The content, or what was decompressed before the damage.
    std::optional<ErrorCode> damage; ///< Empty for a sound block.
};

/// The content length that a block states: that of a compressed block is its content length word, empty if
/// the block or the file is too short to hold it; that of any other is the block's length.
/// @throws Error    ReadFailed alone.
std::optional<std::uint32_t> readContentLength(Source& source, const BlockRecord& block);

/// What can be said about a block without reading its payload: BlockBeyondFile, ContentLost,
/// BlockOverwritten, ContentLengthMissing, ContentLengthImplausible, or nothing.
std::optional<ErrorCode> findLengthDamage(const BlockRecord& block, std::uint64_t fileSize);

/// Reads a block and decompresses it if it is compressed. Damage is reported in the result, not thrown.
///
/// Damage is one of findLengthDamage(), or ZlibDamaged, ZlibIncomplete, ContentTooShort, ContentTooLong,
/// ChecksumMismatch, TrailingBytes. If it is TrailingBytes, the content itself is complete.
/// @param room    Its memory is used for the content if it is large enough; to touch new memory takes a good
///                part of the time that decompressing takes.
/// @throws Error  ReadFailed alone.
/// @par Cost
/// Memory for the content and 64 KiB.
BlockContent readBlockContent(Source& source, const BlockRecord& block, std::vector<std::uint8_t> room = {});

} // namespace MoxReader
