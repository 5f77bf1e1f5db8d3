#pragma once

#include "MoxReader/Format.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace MoxReader {

/// One entry of the index, and where its block lies.
struct BlockRecord {
    std::uint64_t id = 0;             ///< Place in the chain of tables, from 0. Not stored.
    std::uint64_t recordPosition = 0; ///< File offset of this record.
    std::uint8_t number = 0;          ///< Serial number as stored: id + 1, wrapping at 256.
    std::uint32_t nameLength = 0;     ///< As stored; always 128 in a sound file.
    std::array<std::uint8_t, Format::NameSize> rawName{}; ///< The whole name field.
    std::string name;                                     ///< The name field up to its first NUL.
    std::uint32_t length = 0;                             ///< Bytes in the file.
    std::uint8_t flags = 0;                               ///< Format::FlagCompressed, Format::FlagFreezable.
    std::uint8_t reserved = 0;                            ///< Always 0 in a sound file.
    std::uint64_t position = 0; ///< File offset of the block, see IndexTable::displacement.
    bool isOverwritten = false; ///< A part of it was overwritten later; its content is lost.

    /// Bytes of content: for a compressed block its content length word (empty if the block or the file is
    /// too short to hold one, or if it was overwritten), for any other block its length. Not yet checked
    /// against the actual content.
    std::optional<std::uint32_t> contentLength;

    /// The offset of the first byte after the block.
    std::uint64_t end() const { return position + length; }

    /// Whether the block is a content length and a zlib stream.
    bool isCompressed() const { return (flags & Format::FlagCompressed) != 0; }
    /// Whether the writer was free to write the block before it closed the file.
    bool isFreezable() const { return (flags & Format::FlagFreezable) != 0; }
    /// Whether the block is an index table.
    bool isIndexBlock() const { return name.starts_with(Format::IndexBlockName); }
    /// Whether no block has claimed the record.
    bool isEmptyEntry() const { return name.starts_with(Format::EmptyBlockName); }
};

/// Parses one index record. id, recordPosition, position and contentLength keep their defaults.
BlockRecord parseBlockRecord(std::span<const std::uint8_t, Format::RecordSize> bytes);

} // namespace MoxReader
