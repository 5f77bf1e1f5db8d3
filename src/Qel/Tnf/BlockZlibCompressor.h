#pragma once

#include <Qel/Tnf/BlockTransformation.h>

namespace QelTnf {

/// Replaces a block's content by its length in 32 bits and the content as one zlib stream (RFC 1950).
class BlockZlibCompressor final : public BlockTransformation {
public:
    explicit BlockZlibCompressor(int level) : level_(level) {}

    /// If zlib fails, the block is left empty and its content is lost without a report.
    /// @throws Qel::Exception::MemoryAllocationException if there is no memory for the compressed content;
    ///         the block is then empty and its content lost.
    void operator()(Block& block) override;

private:
    int level_;
};

} // namespace QelTnf
