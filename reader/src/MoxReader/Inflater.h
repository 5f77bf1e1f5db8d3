#pragma once

#include "MoxReader/BlockContent.h"

#include <zlib.h>

#include <array>

namespace MoxReader {

/// Decompresses one zlib stream of a source piece by piece. Each object is used once.
class Inflater {
public:
    /// @param position  File offset of the zlib stream.
    /// @param stored    Length of the zlib stream, which lies inside the source.
    Inflater(Source& source, std::uint64_t position, std::uint64_t stored);
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    ~Inflater();

    /// @param room  Empty; takes the content.
    BlockContent run(std::uint32_t contentLength, std::vector<std::uint8_t> room);

private:
    std::optional<ErrorCode> inflateAll(std::vector<std::uint8_t>& content, std::size_t contentLength);
    std::optional<ErrorCode> judgeStep(int result) const;
    std::optional<ErrorCode> judgeEnd(std::size_t contentLength) const;
    void refill();
    void offerOutput(std::vector<std::uint8_t>& content, std::size_t contentLength);
    std::uint64_t unread() const { return stored_ + zlib_.avail_in; }

    static constexpr std::size_t ChunkSize = 65536;
    /// The content grows by so much at a time, and is still in the processor's cache from being made when
    /// zlib writes to it.
    static constexpr std::size_t PieceSize = 131072;

    Source& source_;
    std::uint64_t position_;
    std::uint64_t stored_; ///< Bytes not yet read from the source.
    std::uint64_t produced_ = 0;
    std::uint8_t surplus_ = 0; ///< Takes the first byte beyond the stated length, which reveals an excess.
    z_stream zlib_{};
    std::array<std::uint8_t, ChunkSize> chunk_;
};

} // namespace MoxReader
