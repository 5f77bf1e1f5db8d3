#include "FileContent.h"

#include <MoxReader/File.h>

#include <algorithm>

namespace Golden {

namespace {

constexpr std::size_t FirstRecord = 20;
constexpr std::size_t RecordSize = 139;
constexpr std::size_t LengthInRecord = 133;

std::size_t wordAt(const Bytes& bytes, std::size_t offset) {
    std::size_t word = 0;
    for (std::size_t byte = 4; byte-- > 0;) {
        word = word << 8U | bytes.at(offset + byte);
    }
    return word;
}

void blank(Bytes& bytes, std::size_t offset) {
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), 4, std::uint8_t{0});
}

// @param firstRecord Where the records begin that end with the bytes.
void blankLengths(Bytes& bytes, std::size_t firstRecord) {
    for (std::size_t record = firstRecord; record < bytes.size(); record += RecordSize) {
        blank(bytes, record + LengthInRecord);
    }
}

std::size_t afterTexts(const Bytes& bytes, std::size_t offset, int texts) {
    for (; texts > 0; --texts) {
        offset += 4 + wordAt(bytes, offset);
    }
    return offset;
}

// Erases the date of the last save, and blanks the size of its record, which depends on the date.
void eraseDate(Bytes& global) {
    const auto saves = wordAt(global, 0);
    std::size_t record = 4;
    for (std::size_t save = 1; save < saves; ++save) {
        record += wordAt(global, record);
    }
    // Before the date: the record's size and version; the source's name and version; the format's version.
    const auto date = afterTexts(global, record + 4, 4);
    const auto begin = global.begin() + static_cast<std::ptrdiff_t>(date);
    global.erase(begin, begin + static_cast<std::ptrdiff_t>(4 + wordAt(global, date)));
    blank(global, record);
}

BlockContent readBlock(const MoxReader::File& file, const MoxReader::BlockRecord& block) {
    BlockContent content{.name = block.name, .isLost = false, .bytes = {}};
    try {
        content.bytes = file.readBlock(block.id);
    } catch (const MoxReader::Error&) {
        content.isLost = true;
        return content;
    }
    if (block.isIndexBlock()) {
        blankLengths(content.bytes, 4);
    }
    return content;
}

// The stream can be divided into several blocks anywhere, so it is compared as a whole.
BlockContent readGlobalInformation(const MoxReader::File& file) {
    const std::string name(MoxReader::Format::GlobalStream);
    auto stream = file.stream(name);
    BlockContent content{.name = name, .isLost = false, .bytes = stream.readBytes(stream.size())};
    eraseDate(content.bytes);
    return content;
}

} // namespace

FileContent readFileContent(const std::string& path) {
    const MoxReader::File file(path);
    FileContent content{.head = Bytes(MoxReader::Format::FirstBlockPosition), .blocks = {}};
    file.source().read(0, content.head);
    blankLengths(content.head, FirstRecord);
    for (const auto& block : file.blocks()) {
        if (!block.isEmptyEntry() && block.name != MoxReader::Format::GlobalStream) {
            content.blocks.push_back(readBlock(file, block));
        }
    }
    content.blocks.push_back(readGlobalInformation(file));
    return content;
}

} // namespace Golden
