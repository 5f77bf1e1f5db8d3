#include "MoxReader/BlockContent.h"

#include "MoxReader/Inflater.h"
#include "MoxReader/LittleEndian.h"

#include <array>
#include <utility>

namespace MoxReader {

namespace {

/// Empties room and makes it large enough. The old memory is freed before more is allocated.
void prepare(std::vector<std::uint8_t>& room, std::size_t size) {
    room.clear();
    if (room.capacity() < size) {
        room = {};
        room.reserve(size);
    }
}

BlockContent readPlain(Source& source, const BlockRecord& block, std::vector<std::uint8_t> room) {
    BlockContent content{.bytes = std::move(room), .damage = std::nullopt};
    content.bytes.resize(block.length);
    source.read(block.position, content.bytes);
    return content;
}

} // namespace

std::optional<std::uint32_t> readContentLength(Source& source, const BlockRecord& block) {
    if (!block.isCompressed() || block.isIndexBlock()) {
        return block.length;
    }
    const bool inFile =
        block.position <= source.size() && Format::ContentWordSize <= source.size() - block.position;
    if (block.length < Format::ContentWordSize || !inFile) {
        return std::nullopt;
    }
    std::array<std::uint8_t, Format::ContentWordSize> bytes{};
    source.read(block.position, bytes);
    return littleEndian<std::uint32_t>(bytes.data());
}

std::optional<ErrorCode> findLengthDamage(const BlockRecord& block, std::uint64_t fileSize) {
    if (block.isCompressed() && block.length == 0) {
        return ErrorCode::ContentLost;
    }
    if (block.position > fileSize || block.length > fileSize - block.position) {
        return ErrorCode::BlockBeyondFile;
    }
    if (block.isOverwritten) {
        return ErrorCode::BlockOverwritten;
    }
    if (!block.isCompressed()) {
        return std::nullopt;
    }
    if (!block.contentLength || block.length < Format::ContentWordSize) {
        return ErrorCode::ContentLengthMissing;
    }
    const std::uint64_t stored = block.length - Format::ContentWordSize;
    if (*block.contentLength > stored * Format::ZlibMaxExpansion) {
        return ErrorCode::ContentLengthImplausible;
    }
    return std::nullopt;
}

BlockContent readBlockContent(Source& source, const BlockRecord& block, std::vector<std::uint8_t> room) {
    if (const auto damage = findLengthDamage(block, source.size())) {
        return {.bytes = {}, .damage = damage};
    }
    prepare(room, block.isCompressed() ? *block.contentLength : block.length);
    if (!block.isCompressed()) {
        return readPlain(source, block, std::move(room));
    }
    Inflater inflater(source, block.position + Format::ContentWordSize,
                      block.length - Format::ContentWordSize);
    return inflater.run(*block.contentLength, std::move(room));
}

} // namespace MoxReader
