#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace QelTnf {

/// The blocks of one name, and the size at which each counts as full.
struct BlockSizeLimiter {
    /// Starts without blocks, with the limit that the environment variable sets, or else 209,715,200 bytes.
    /// The limit stays when the variable changes.
    BlockSizeLimiter();
    explicit BlockSizeLimiter(std::uint32_t fixedLimit) : limit(fixedLimit) {}

    /// For an ordinary name, its blocks, oldest first; values go into the last. For the empty name, the stack
    /// of free ids, the lowest on top.
    std::vector<std::uint64_t> blockIds;
    std::uint32_t limit;

    /// The bytes in all blocks but the last; these blocks no longer grow.
    std::uint64_t closedBytes = 0;
    /// The number of blocks, counted from the oldest, that are known to be frozen.
    std::size_t frozenBlocks = 0;
    /// For each bit, the number of blocks, counted from the oldest, that are known to have that flag. Not
    /// kept for the empty name, whose ids come and go.
    std::array<std::size_t, 8> flaggedBlocks = {};
};

} // namespace QelTnf
