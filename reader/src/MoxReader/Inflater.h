#pragma once

#include "MoxReader/BlockContent.h"

#include <zlib.h>

#include <array>

namespace MoxReader {

/// Decompresses one zlib stream that stands in a source, piece by piece. Used once.
class Inflater {
public:
    /// @param position  File offset of the zlib stream.
    /// @param stored    Bytes of the zlib stream; they lie inside the source.
    Inflater(Source& source, std::uint64_t position, std::uint64_t stored);
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    ~Inflater();

    BlockContent run(std::uint32_t contentLength);

private:
    std::optional<ErrorCode> inflateAll(std::vector<std::uint8_t>& content);
    std::optional<ErrorCode> judgeStep(int result) const;
    std::optional<ErrorCode> judgeEnd(std::size_t contentLength) const;
    void refill();
    void offerOutput(std::vector<std::uint8_t>& content);
    std::uint64_t unread() const { return stored_ + zlib_.avail_in; }

    static constexpr std::size_t ChunkSize = 65536;

    Source& source_;
    std::uint64_t position_;
    std::uint64_t stored_; ///< Bytes that are still in the source alone.
    std::uint64_t produced_ = 0;
    std::uint8_t surplus_ = 0; ///< Takes the first byte beyond the stated length, so that too much shows.
    z_stream zlib_{};
    std::array<std::uint8_t, ChunkSize> chunk_;
};

} // namespace MoxReader
