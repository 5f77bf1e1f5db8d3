#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace RandomUse {

/// The numbers of a model on their way into its file, and the blocks that take them.
class PlainStream {
public:
    /// @param bits Row by row.
    /// @return where the numbers begin.
    std::uint64_t put(const std::vector<std::uint32_t>& bits, unsigned width,
                      const std::optional<std::string>& blockSize);

    /// Writes out the full blocks. Nothing fails if there is a file.
    /// @return whether a block had to go out that has no file to go to.
    bool flushFails(bool hasFile);

    const std::vector<std::uint8_t>& bytes() const { return bytes_; }

private:
    struct Block {
        std::uint64_t size = 0;
        bool canGoOut = false; // From the array on that follows the one that opened it.
        bool hasGoneOut = false;
    };

    std::vector<std::uint8_t> bytes_;
    std::vector<Block> blocks_;
    std::uint64_t limit_ = 0; // Of all blocks; taken when the first is opened.
};

} // namespace RandomUse
