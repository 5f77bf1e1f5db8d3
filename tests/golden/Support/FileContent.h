#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Golden {

using Bytes = std::vector<std::uint8_t>;

/// The content of a block.
struct BlockContent {
    std::string name;
    bool isLost = false;
    Bytes bytes;

    bool operator==(const BlockContent&) const = default;
};

/// What every save of a model gives, whatever the date and the version of zlib.
struct FileContent {
    /// Everything before the first block, with 0 for the lengths of the blocks.
    Bytes head;
    /// All blocks that are not empty entries. The tables in Index Blocks have 0 for lengths, and the global
    /// information lacks the date of the last save.
    std::vector<BlockContent> blocks;

    bool operator==(const FileContent&) const = default;
};

/// @throws MoxReader::Error if the file has no sound index.
FileContent readFileContent(const std::string& path);

} // namespace Golden
