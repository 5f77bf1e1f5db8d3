#pragma once

#include <MoxReader/Error.h>

#include <cstdint>
#include <optional>

namespace MoxTool {

/// The result of an attempt to inflate a block of which only the place is known.
struct BlockAttempt {
    std::uint64_t offset = 0;   ///< The place of the content length word in the file.
    std::uint64_t stored = 0;   ///< Bytes in the file, with that word, as far as the block could be followed.
    std::uint64_t stated = 0;   ///< The content length.
    std::uint64_t inflated = 0; ///< Bytes of content that were inflated, never more than stated.
    std::uint64_t read = 0;     ///< Bytes that were read for it.
    /// Empty for a whole block: its stream ends, with the right checksum, after exactly the stated bytes.
    std::optional<MoxReader::ErrorCode> damage{};

    bool isWhole() const { return !damage; }
    /// Whether the bytes ended before the block did, with nothing wrong up to there.
    bool isCutOff() const { return damage == MoxReader::ErrorCode::ZlibIncomplete; }
    std::uint64_t end() const { return offset + stored; }
};

} // namespace MoxTool
