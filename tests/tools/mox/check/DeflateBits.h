#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// What a bit of a zlib stream means for inflating it (RFC 1950 and RFC 1951).
enum class DeflateBit : std::uint8_t {
    Frame,    ///< Header or checksum of the stream.
    Block,    ///< Header of a deflate block: its kind, the lengths of its codes.
    Symbol,   ///< A literal byte, the end of a block, or how many bytes are copied.
    Distance, ///< How far back the copied bytes begin.
    Padding,  ///< Unused, between the last block and the next whole byte.
};

/// The meaning of each bit of a whole zlib stream, the lowest bit of each byte first.
/// @throws std::runtime_error if it holds a stored block or is not whole.
std::vector<DeflateBit> deflateBits(std::span<const std::uint8_t> zlibStream);
