#include "Support/TestFile.h"

#include <zlib.h>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr std::size_t IndexBlockBytes = 27804;

const std::string EmptyName = std::string(1, '\x0B') + "Empty Block ";
const std::string IndexName = std::string(1, '\x0B') + "Index Block ";

} // namespace

std::vector<std::uint8_t> zlibStream(const std::vector<std::uint8_t>& content) {
    uLongf size = compressBound(static_cast<uLong>(content.size()));
    std::vector<std::uint8_t> stream(size);
    if (compress2(stream.data(), &size, content.data(), static_cast<uLong>(content.size()), 6) != Z_OK)
        throw std::runtime_error("compress2 failed");
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
        if (isLastOfTable)
            all.push_back({IndexName, std::vector<std::uint8_t>(IndexBlockBytes), 0x20});
        all.push_back(block);
    }
    return all;
}

std::vector<std::uint8_t> TestFile::bytes() const {
    const auto blocks = withIndexBlocks();
    const auto record = [&](std::size_t id) {
        const auto number = static_cast<unsigned>(id + 1) & 0xFFu;
        if (id >= blocks.size())
            return indexRecord(number, EmptyName, 0, 0);
        return indexRecord(number, blocks[id].name, static_cast<std::uint32_t>(blocks[id].payload.size()),
                           blocks[id].flags);
    };
    Bytes file;
    file.raw({0x89, 0x54, 0x4E, 0x46, 0x0D, 0x0A, 0x1A, 0x0A}).raw("1.3").u8(0).u32(2784).u32(20);
    for (std::size_t id = 0; id < 20; ++id)
        file.raw(record(id));
    for (std::size_t id = 0; id < blocks.size(); ++id) {
        if (blocks[id].name != IndexName) {
            file.raw(blocks[id].payload);
            continue;
        }
        file.u32(200);
        for (std::size_t row = id + 1; row <= id + 200; ++row)
            file.raw(record(row));
    }
    return file;
}

std::shared_ptr<MoxReader::MemorySource> TestFile::source() const {
    return memory(bytes());
}
