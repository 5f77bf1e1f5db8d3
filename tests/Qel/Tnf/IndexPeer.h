#pragma once

#include <Qel/Tnf/Index.h>

namespace QelTnf {

/// Accesses the insides of an index, to set what its own logic can't.
struct IndexPeer {
    static std::vector<BlockInfo>& entries(Index& index) { return index.blockInfos_; }
    static std::vector<Block>& blocks(Index& index) { return index.blocks_; }
    static std::map<std::string, BlockSizeLimiter>& limiters(Index& index) { return index.limiters_; }
    static unsigned int nextNumber(const Index& index) { return index.nextNumber_; }
    static std::uint64_t indexPosition(const Index& index) { return index.indexPosition_; }
    static std::uint64_t addEmptyBlocks(Index& index, std::uint64_t count) {
        return index.AddEmptyBlocks(count);
    }
    static void putIndexTable(Block& block, const std::vector<BlockInfo>& entries) {
        Index::PutIndexTable(block, entries);
    }
};

} // namespace QelTnf
