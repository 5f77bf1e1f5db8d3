#pragma once

#include <Qel/Tnf/Block.h>

#include <utility>

namespace QelTnf {

/// A block of its own, whose buffer goes with it unless it is taken.
class TemporaryBlock {
public:
    TemporaryBlock() = default;
    TemporaryBlock(const TemporaryBlock&) = delete;
    TemporaryBlock& operator=(const TemporaryBlock&) = delete;
    ~TemporaryBlock() { block.release(); }

    Block& get() { return block; }

    /// Hands the block with its buffer to the caller.
    Block take() noexcept { return std::exchange(block, Block()); }

private:
    Block block;
};

} // namespace QelTnf
