#pragma once

#include "Support/Bytes.h"

#include "MoxReader/MemorySource.h"
#include "MoxReader/StreamReader.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

/// Lays out a whole file by hand: header, index tables, blocks.
class TestFile {
public:
    /// A content length and a zlib stream, flags 0x01.
    TestFile& compressed(const std::string& name, const std::vector<std::uint8_t>& content);
    /// The content as it is, flags 0x00.
    TestFile& plain(const std::string& name, const std::vector<std::uint8_t>& content);
    /// Any payload with any flags.
    TestFile& raw(const std::string& name, const std::vector<std::uint8_t>& payload, unsigned flags);

    /// The file. There are Index Blocks at ids 19, 219 and so on, if a block follows.
    std::vector<std::uint8_t> bytes() const;
    /// The file that results if the writer takes these Index Blocks to lie at offset 0 when it places the
    /// blocks after them: all blocks are written in ascending id, then the tables.
    std::vector<std::uint8_t> displacedBytes(const std::set<std::size_t>& restarts) const;
    std::shared_ptr<MoxReader::MemorySource> source() const;

private:
    struct Block {
        std::string name;
        std::vector<std::uint8_t> payload;
        unsigned flags;
    };

    std::vector<Block> withIndexBlocks() const;
    std::vector<std::uint8_t> table(const std::vector<Block>& blocks, std::size_t first,
                                    std::size_t count) const;

    std::vector<Block> blocks_;
};

/// One zlib stream of the content, level 6.
std::vector<std::uint8_t> zlibStream(const std::vector<std::uint8_t>& content);

/// A record of the index, 139 bytes.
std::vector<std::uint8_t> indexRecord(unsigned number, const std::string& name, std::uint32_t length,
                                      unsigned flags);

std::shared_ptr<MoxReader::MemorySource> memory(std::vector<std::uint8_t> bytes);

/// This content as the only stream of a file.
MoxReader::StreamReader streamOf(const std::vector<std::uint8_t>& content);
