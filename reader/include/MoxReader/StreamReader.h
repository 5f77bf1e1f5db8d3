#pragma once

#include "MoxReader/BlockRecord.h"
#include "MoxReader/Error.h"
#include "MoxReader/Source.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace MoxReader {

/// A cursor over the stream of one name: its blocks, decompressed and joined.
///
/// The reader holds at most one decompressed block. Positions count bytes of the decompressed stream. After a
/// failed read the position is anywhere between where the read began and where it would have ended.
class StreamReader {
public:
    /// @param blocks  The blocks of the stream in ascending id. They need not come from an index. A block
    ///                whose content is lost but whose contentLength is known keeps its place in the stream.
    StreamReader(std::shared_ptr<Source> source, std::string name, std::vector<BlockRecord> blocks);

    /// The name of the stream.
    const std::string& name() const { return name_; }
    /// The blocks of that name, in order.
    const std::vector<BlockRecord>& blocks() const { return blocks_; }
    /// The stream position at which blocks()[index] begins.
    std::uint64_t blockStart(std::size_t index) const { return starts_[index]; }
    /// The place in blocks() of the block that holds the byte at a position below size().
    std::size_t blockAt(std::uint64_t position) const;

    /// Whether blocks()[index] has been read so far and is free of damage.
    bool isKnownSound(std::size_t index) const { return knownSound_[index]; }

    /// Size of the stream in bytes. The stream ends before the first block whose length is not known, see
    /// damage().
    std::uint64_t size() const { return starts_.back(); }
    /// Why the stream ends before its last block; empty if it does not. Reads past size() raise this error.
    const std::optional<Error>& damage() const { return damage_; }

    /// Where the next value is read, in bytes of the stream.
    std::uint64_t position() const { return position_; }
    /// Bytes from there to the end of the stream.
    std::uint64_t remaining() const { return size() - position_; }
    /// Whether there is nothing left.
    bool atEnd() const { return remaining() == 0; }

    /// @throws Error  EndOfStream, or damage(), if position is greater than size().
    void seek(std::uint64_t position);
    /// @throws Error  As seek().
    void skip(std::uint64_t count);

    // All reads below throw Error: EndOfStream (or damage()) before anything is allocated if the stream is
    // too short, the codes of readBlockContent() if a block is damaged, and ReadFailed.

    /// Fills target.
    void read(std::span<std::uint8_t> target);
    /// The next `count` bytes.
    std::vector<std::uint8_t> readBytes(std::uint64_t count);
    /// As readBytes(), but without a copy if one block holds all of the bytes.
    /// @param room  Takes the bytes otherwise.
    /// @return the bytes, good until the next read and as long as room is.
    std::span<const std::uint8_t> view(std::uint64_t count, std::vector<std::uint8_t>& room);

    /// One number. T is std::uint8_t, std::uint32_t, std::uint64_t, float or double.
    template <class T>
    T readNumber();
    /// @throws Error  BadValue if the byte is neither 0 nor 1.
    bool readBool();
    /// A 32-bit length, then the bytes.
    std::string readString();
    /// A 32-bit count, then the numbers; T as for readNumber().
    /// @throws Error  BadCount if the stream cannot hold that many.
    template <class T>
    std::vector<T> readNumbers();
    /// A 32-bit count, then the strings.
    /// @throws Error  BadCount if the stream cannot hold that many.
    std::vector<std::string> readStrings();
    /// A 32-bit count of things of at least minSize bytes each.
    /// @throws Error  BadCount if the stream cannot hold that many.
    std::uint32_t readCount(std::uint64_t minSize);

    /// The current position, for an Error.
    Place place() const;

private:
    void require(std::uint64_t count) const;
    void load(std::size_t block);

    std::shared_ptr<Source> source_;
    std::string name_;
    std::vector<BlockRecord> blocks_;
    std::vector<std::uint64_t> starts_; ///< The start of each readable block, then the stream's size.
    std::optional<Error> damage_;
    std::uint64_t position_ = 0;
    std::optional<std::size_t> loaded_; ///< The block that content_ holds.
    std::vector<std::uint8_t> content_;
    std::vector<bool> knownSound_; ///< By the places in blocks_.
};

} // namespace MoxReader
