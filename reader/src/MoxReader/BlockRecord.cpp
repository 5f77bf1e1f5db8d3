#include "MoxReader/BlockRecord.h"

#include "MoxReader/LittleEndian.h"

#include <algorithm>

namespace MoxReader {

BlockRecord parseBlockRecord(std::span<const std::uint8_t, Format::RecordSize> bytes) {
    constexpr std::size_t NameAt = 1 + 4;
    constexpr std::size_t LengthAt = NameAt + Format::NameSize;
    BlockRecord record;
    record.number = bytes[0];
    record.nameLength = littleEndian<std::uint32_t>(&bytes[1]);
    std::ranges::copy(bytes.subspan<NameAt, Format::NameSize>(), record.rawName.begin());
    record.name.assign(record.rawName.begin(), std::ranges::find(record.rawName, 0));
    record.length = littleEndian<std::uint32_t>(&bytes[LengthAt]);
    record.flags = bytes[LengthAt + 4];
    record.reserved = bytes[LengthAt + 5];
    return record;
}

} // namespace MoxReader
