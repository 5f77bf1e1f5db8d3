#pragma once

#include <Qel/Tnf/Block.h>

#include <utility>

namespace QelTnf {

/// A block outside the catalogue. Frees its buffer unless the block is taken.
class TemporaryBlock {
public:
    TemporaryBlock() = default;
    TemporaryBlock(const TemporaryBlock&) = delete;
    TemporaryBlock& operator=(const TemporaryBlock&) = delete;
    ~TemporaryBlock() { block_.Release(); }

    Block& Get() { return block_; }

    /// Hands the block with its buffer to the caller.
    Block Take() noexcept { return std::exchange(block_, Block()); }

private:
    Block block_;
};

} // namespace QelTnf
