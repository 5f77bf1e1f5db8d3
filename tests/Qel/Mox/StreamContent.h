#pragma once

#include "Support/Bytes.h"

#include <Qel/Tnf/Index.h>

#include <string>

namespace Support {

/// What the blocks of a name hold in memory, joined in order.
inline ByteVector streamOf(const QelTnf::Index& index, const std::string& name) {
    ByteVector content;
    for (std::size_t id = 0; id < index.GetBlocks().size(); ++id) {
        const QelTnf::Block& block = index.GetBlocks()[id];
        if (index.GetBlockInfos()[id].name == name && block.GetData() != nullptr) {
            content.insert(content.end(), block.GetData(), block.GetData() + block.GetSize());
        }
    }
    return content;
}

} // namespace Support
