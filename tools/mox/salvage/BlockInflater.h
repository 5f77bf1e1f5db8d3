#pragma once

#include "BlockAttempt.h"

#include <MoxReader/Source.h>

#include <zlib.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace MoxTool {

/// Inflates blocks of unknown length: each ends where its zlib stream does. Takes a constant amount of
/// memory, and reads little of a block that fails early.
class BlockInflater {
public:
    /// Receives the content piece by piece.
    using Sink = std::function<void(std::span<const std::uint8_t>)>;

    explicit BlockInflater(MoxReader::Source& source);
    BlockInflater(const BlockInflater&) = delete;
    BlockInflater& operator=(const BlockInflater&) = delete;
    ~BlockInflater();

    /// @param offset The place of the content length word, inside the source.
    /// @param end    The block is cut off here; inside the source as well.
    /// @throws MoxReader::Error ReadFailed.
    BlockAttempt run(std::uint64_t offset, std::uint64_t end, const Sink& sink);

private:
    void startAt(std::uint64_t offset, std::uint64_t end);
    void refill();
    bool takeContentLength(std::uint64_t& length);
    std::optional<MoxReader::ErrorCode> inflateContent(BlockAttempt& attempt, const Sink& sink);
    std::optional<MoxReader::ErrorCode> judge(int status, const BlockAttempt& attempt) const;

    MoxReader::Source& source_;
    std::vector<std::uint8_t> input_;
    std::vector<std::uint8_t> output_;
    z_stream zlib_{};
    std::uint64_t position_ = 0; ///< The next byte to read.
    std::uint64_t limit_ = 0;    ///< Nothing is read from here on.
    std::size_t pieceSize_ = 0;  ///< Bytes to read next.
};

} // namespace MoxTool
