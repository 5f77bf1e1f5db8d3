#include "floor/BlockFile.h"

#include "floor/shuffle.h"

#include <sys/types.h>
#include <zlib.h>

#include <cstring>
#include <stdexcept>

namespace Workloads::Floor {

namespace {

constexpr int Level = 6;
constexpr unsigned char Compressed = 0x01;
constexpr unsigned char Freezable = 0x20;
constexpr std::size_t NameSize = 128;
constexpr std::size_t HeadRecords = 20;
constexpr std::size_t TableRecords = 200;
constexpr std::uint64_t HeadPlace = 12;
constexpr std::uint64_t BlocksPlace = 2800;
constexpr std::uint32_t TableSize = 27804;
constexpr const char* EmptyName = "\x0b"
                                  "Empty Block ";
constexpr const char* TableName = "\x0b"
                                  "Index Block ";

// The last record of each table names the block that holds the next table.
bool isTable(std::size_t id) {
    return id % TableRecords == HeadRecords - 1;
}

} // namespace

BlockFile::BlockFile(const std::string& path, std::size_t blockSize)
    : file_(std::fopen(path.c_str(), "wb")), blockSize_(blockSize), place_(BlocksPlace) {
    if (file_ == nullptr) {
        throw std::runtime_error("can't write " + path);
    }
    (void)std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    writeAt(0, "\x89TNF\r\n\x1a\n1.3", HeadPlace);
}

void BlockFile::openBlock(Stream& stream) {
    if (stream.block != nullptr) {
        stream.closedBytes += stream.block->size();
    }
    if (isTable(records_.size())) {
        records_.push_back({TableName, TableSize, Freezable, nullptr});
    }
    stream.id = records_.size();
    records_.push_back({stream.name, 0, Compressed, std::make_unique<Buffer>()});
    stream.block = records_.back().content.get();
}

std::uint64_t BlockFile::putArray(Stream& stream, const float* values, std::size_t rows,
                                  std::size_t columns) {
    const std::uint64_t position = stream.size();
    // Every block but the last that an array has opened is marked.
    if (!records_.empty() && stream.closedBytes + (stream.block != nullptr ? 1 : 0) != 0) {
        records_[stream.id].flags |= Freezable;
    }
    Buffer& block = blockOf(stream);
    const std::size_t size = rows * columns * sizeof(float);
    if (block.size() == 0) {
        block.growTo(blockSize_ + size);
    }
    shuffle(values, rows, columns, block.extend(size));
    if (block.size() >= blockSize_) {
        stream.closedBytes += block.size();
        stream.block = nullptr;
        writeBlocks();
    }
    return position;
}

// Places are sums of lengths, so blocks go out in the order of their ids.
void BlockFile::writeBlocks() {
    for (; written_ < records_.size(); ++written_) {
        Record& record = records_[written_];
        if (isTable(written_)) {
            tablePlaces_.push_back(place_);
        } else {
            writeCompressed(record);
        }
        place_ += record.length;
    }
}

void BlockFile::writeCompressed(Record& record) {
    Buffer& content = *record.content;
    const auto contentLength = static_cast<std::uint32_t>(content.size());
    uLongf length = compressBound(contentLength);
    Buffer compressed;
    compressed.put(contentLength);
    compressed.growTo(sizeof(contentLength) + length);
    if (compress2(compressed.data() + sizeof(contentLength), &length, content.data(), contentLength, Level) !=
        Z_OK) {
        throw std::runtime_error("zlib failed");
    }
    record.content.reset();
    record.length = static_cast<std::uint32_t>(sizeof(contentLength) + length);
    writeAt(place_, compressed.data(), record.length);
}

void BlockFile::close() {
    writeBlocks();
    const auto headLength = static_cast<std::uint32_t>(BlocksPlace - HeadPlace - sizeof(std::uint32_t));
    writeAt(HeadPlace, &headLength, sizeof(headLength));
    writeTable(HeadPlace + sizeof(headLength), 0, HeadRecords);
    std::size_t first = HeadRecords;
    for (const std::uint64_t place : tablePlaces_) {
        writeTable(place, first, TableRecords);
        first += TableRecords;
    }
    file_.reset();
}

void BlockFile::writeTable(std::uint64_t place, std::size_t first, std::size_t count) {
    static const Record empty{EmptyName, 0, 0, nullptr};
    Buffer table;
    table.put(static_cast<std::uint32_t>(count));
    for (std::size_t id = first; id < first + count; ++id) {
        const Record& record = id < records_.size() ? records_[id] : empty;
        table.put(static_cast<unsigned char>(id + 1));
        table.put(static_cast<std::uint32_t>(NameSize));
        std::strncpy(reinterpret_cast<char*>(table.extend(NameSize)), record.name, NameSize);
        table.put(record.length);
        table.put(record.flags);
        table.put(static_cast<unsigned char>(0));
    }
    writeAt(place, table.data(), table.size());
}

void BlockFile::writeAt(std::uint64_t place, const void* bytes, std::size_t size) {
    if (fseeko(file_.get(), static_cast<off_t>(place), SEEK_SET) != 0 ||
        std::fwrite(bytes, size, 1, file_.get()) != 1) {
        throw std::runtime_error("can't write the file");
    }
}

} // namespace Workloads::Floor
