#include "Support/TestFile.h"

#include "MoxReader/File.h"

#include <zlib.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t IndexBlockBytes = 27804;

const std::string EmptyName = std::string(1, '\x0B') + "Empty Block ";
const std::string IndexName = std::string(1, '\x0B') + "Index Block ";

} // namespace

std::vector<std::uint8_t> zlibStream(const std::vector<std::uint8_t>& content) {
    uLongf size = compressBound(static_cast<uLong>(content.size()));
    std::vector<std::uint8_t> stream(size);
    if (compress2(stream.data(), &size, content.data(), static_cast<uLong>(content.size()), 6) != Z_OK) {
        throw std::runtime_error("compress2 failed");
    }
    stream.resize(size);
    return stream;
}

std::vector<std::uint8_t> indexRecord(unsigned number, const std::string& name, std::uint32_t length,
                                      unsigned flags) {
    const auto used = std::min<std::size_t>(name.size(), 128);
    return Bytes()
        .u8(number)
        .u32(128)
        .raw(name.substr(0, used))
        .fill(128 - used, 0)
        .u32(length)
        .u8(flags)
        .u8(0);
}

std::shared_ptr<MoxReader::MemorySource> memory(std::vector<std::uint8_t> bytes) {
    return std::make_shared<MoxReader::MemorySource>(std::move(bytes));
}

TestFile& TestFile::compressed(const std::string& name, const std::vector<std::uint8_t>& content) {
    return raw(name, Bytes().u32(static_cast<std::uint32_t>(content.size())).raw(zlibStream(content)), 0x01);
}

TestFile& TestFile::plain(const std::string& name, const std::vector<std::uint8_t>& content) {
    return raw(name, content, 0x00);
}

TestFile& TestFile::raw(const std::string& name, const std::vector<std::uint8_t>& payload, unsigned flags) {
    blocks_.push_back({name, payload, flags});
    return *this;
}

// The last record of each table becomes an Index Block as soon as a further block needs a place; its table,
// filled in by bytes(), is all zeros here.
std::vector<TestFile::Block> TestFile::withIndexBlocks() const {
    std::vector<Block> all;
    for (const auto& block : blocks_) {
        const bool isLastOfTable = all.size() == 19 || (all.size() > 19 && (all.size() - 19) % 200 == 0);
        if (isLastOfTable) {
            all.push_back({IndexName, std::vector<std::uint8_t>(IndexBlockBytes), 0x20});
        }
        all.push_back(block);
    }
    return all;
}

std::vector<std::uint8_t> TestFile::table(const std::vector<Block>& blocks, std::size_t first,
                                          std::size_t count) const {
    Bytes bytes;
    bytes.u32(static_cast<std::uint32_t>(count));
    for (std::size_t id = first; id < first + count; ++id) {
        const auto number = static_cast<unsigned>(id + 1) & 0xFFu;
        if (id < blocks.size()) {
            bytes.raw(indexRecord(number, blocks[id].name,
                                  static_cast<std::uint32_t>(blocks[id].payload.size()), blocks[id].flags));
        } else {
            bytes.raw(indexRecord(number, EmptyName, 0, 0));
        }
    }
    return bytes;
}

std::vector<std::uint8_t> TestFile::bytes() const {
    return displacedBytes({});
}

std::vector<std::uint8_t> TestFile::displacedBytes(const std::set<std::size_t>& restarts) const {
    const auto blocks = withIndexBlocks();
    std::vector<std::uint8_t> file = Bytes()
                                         .raw({0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A})
                                         .raw("1.3")
                                         .u8(0)
                                         .u32(2784)
                                         .raw(table(blocks, 0, 20));
    const auto write = [&](std::size_t place, const std::vector<std::uint8_t>& bytes) {
        file.resize(std::max(file.size(), place + bytes.size()));
        std::ranges::copy(bytes, file.begin() + static_cast<std::ptrdiff_t>(place));
    };
    std::vector<std::pair<std::size_t, std::size_t>> indexBlocks; // id and place
    std::size_t place = file.size();
    for (std::size_t id = 0; id < blocks.size(); ++id) {
        const bool isIndexBlock = blocks[id].name == IndexName;
        if (isIndexBlock) {
            indexBlocks.emplace_back(id, place);
        } else {
            write(place, blocks[id].payload);
        }
        place = (restarts.contains(id) ? 0 : place) + blocks[id].payload.size();
    }
    for (const auto& [id, at] : indexBlocks) {
        write(at, table(blocks, id + 1, 200));
    }
    return file;
}

std::shared_ptr<MoxReader::MemorySource> TestFile::source() const {
    return memory(bytes());
}

MoxReader::StreamReader streamOf(const std::vector<std::uint8_t>& content) {
    return MoxReader::File(TestFile().compressed("S", content).source()).stream("S");
}
