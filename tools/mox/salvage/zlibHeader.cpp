#include "zlibHeader.h"

#include <MoxReader/Format.h>

namespace MoxTool {

bool canBeginBlock(MoxReader::Source& source, std::uint64_t place) {
    constexpr auto Needed = MoxReader::Format::ContentWordSize + ZlibHeader.size();
    if (place > source.size() || source.size() - place < Needed) {
        return false;
    }
    std::array<std::uint8_t, ZlibHeader.size()> bytes{};
    source.read(place + MoxReader::Format::ContentWordSize, bytes);
    return bytes == ZlibHeader;
}

} // namespace MoxTool
