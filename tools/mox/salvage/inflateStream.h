#pragma once

#include <MoxReader/Source.h>

#include <cstdint>
#include <ostream>

namespace MoxTool {

/// What came of an attempt to inflate a zlib stream whose length is not known.
struct InflateResult {
    enum Outcome {
        Whole,   ///< It ended, with the right checksum, after exactly the bytes that it was to give.
        CutOff,  ///< The source ended before it did.
        Damaged, ///< It is no zlib stream, or one of another content.
    };
    Outcome outcome = Damaged;
    std::uint64_t consumed = 0; ///< Bytes of the stream, as far as it was followed.
    std::uint64_t produced = 0; ///< Bytes written.
};

/// Inflates what stands at a position, up to the stream's own end, with a constant amount of memory.
/// @param contentLength The bytes that it is to give; no more are ever written.
/// @throws MoxReader::Error ReadFailed.
InflateResult inflateStream(MoxReader::Source& source, std::uint64_t position, std::uint64_t contentLength,
                            std::ostream& out);

} // namespace MoxTool
