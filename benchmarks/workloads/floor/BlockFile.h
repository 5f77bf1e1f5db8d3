#pragma once

#include "floor/Buffer.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace Workloads::Floor {

/// A file of compressed blocks under their names, with its index.
class BlockFile {
public:
    static constexpr std::size_t DefaultBlockSize = 200 * 1024 * 1024;

    explicit BlockFile(const std::string& path, std::size_t blockSize = DefaultBlockSize);

    /// What a caller keeps of a name.
    struct Stream {
        const char* name;
        Buffer* block = nullptr;
        std::size_t id = 0;
        std::uint64_t closedBytes = 0;

        std::uint64_t size() const { return closedBytes + (block != nullptr ? block->size() : 0); }
    };

    /// The block that takes the next value of a name.
    Buffer& blockOf(Stream& stream) {
        if (stream.block == nullptr || stream.block->size() >= blockSize_) {
            openBlock(stream);
        }
        return *stream.block;
    }

    /// Puts an array of rows and columns, each column as four planes of bytes, and writes the block if it is
    /// full then.
    /// @return its position in the stream.
    std::uint64_t putArray(Stream& stream, const float* values, std::size_t rows, std::size_t columns);

    /// Writes what is still in memory, and the index.
    void close();

private:
    struct Record {
        const char* name;
        std::uint32_t length = 0;
        unsigned char flags = 0;
        std::unique_ptr<Buffer> content;
    };
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void openBlock(Stream& stream);
    void writeBlocks();
    void writeCompressed(Record& record);
    void writeTable(std::uint64_t place, std::size_t first, std::size_t count);
    void writeAt(std::uint64_t place, const void* bytes, std::size_t size);

    std::unique_ptr<std::FILE, CloseFile> file_;
    std::size_t blockSize_;
    std::vector<Record> records_;
    std::vector<std::uint64_t> tablePlaces_;
    std::size_t written_ = 0;
    std::uint64_t place_;
};

} // namespace Workloads::Floor
