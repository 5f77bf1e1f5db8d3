#pragma once

#include <MoxReader/Source.h>

#include <array>
#include <cstdint>

namespace MoxTool {

/// The first bytes of every zlib stream of the level at which blocks are compressed.
inline constexpr std::array<std::uint8_t, 2> ZlibHeader = {0x78, 0x9C};

/// Whether a block can begin at a place: whether a zlib header follows the room for its content length.
/// @throws MoxReader::Error ReadFailed.
bool canBeginBlock(MoxReader::Source& source, std::uint64_t place);

} // namespace MoxTool
