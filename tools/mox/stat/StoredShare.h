#pragma once

#include <MoxReader/StreamReader.h>

#include <cstdint>
#include <vector>

namespace MoxTool {

/// How many bytes of the file a piece of a stream accounts for. A block is compressed as a whole, so a piece
/// of it gets a part of the block's bytes in proportion to its length.
class StoredShare {
public:
    /// Copies what it needs of the stream; reads nothing.
    explicit StoredShare(const MoxReader::StreamReader& stream);

    /// @param position, size In the decompressed stream. Anything beyond its end accounts for nothing.
    double of(std::uint64_t position, std::uint64_t size) const;

private:
    double storedBefore(std::uint64_t position) const;

    std::vector<std::uint64_t> contentEnds_; ///< The end of each block in the stream, ascending.
    std::vector<std::uint64_t> storedEnds_;  ///< The bytes of the blocks up to and including each.
};

} // namespace MoxTool
