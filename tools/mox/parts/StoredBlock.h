#pragma once

#include <cstdint>

namespace MoxTool {

/// A block of the stream "Heavy Data" as a file stores it.
struct StoredBlock {
    std::uint64_t place;         ///< In the file.
    std::uint32_t length;        ///< Bytes in the file.
    std::uint32_t contentLength; ///< Bytes before compression.
    std::uint64_t start;         ///< Where it begins in the stream.
    bool isCompressed;

    std::uint64_t end() const { return start + contentLength; }
};

} // namespace MoxTool
