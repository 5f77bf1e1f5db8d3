#pragma once

#include "Support/Bytes.h"

#include <Qel/Tnf/Block.h>

#include <bit>

namespace Support {

/// The fields of a block, to bring about states that would take gigabytes of values.
struct BlockFields {
    unsigned char* data;
    std::uint64_t capacity;
    std::uint32_t size;
    std::uint32_t position;
};

inline QelTnf::Block blockOf(const BlockFields& fields) {
    return std::bit_cast<QelTnf::Block>(fields);
}

inline BlockFields fieldsOf(const QelTnf::Block& block) {
    return std::bit_cast<BlockFields>(block);
}

/// The valid bytes of a block that has a buffer.
inline ByteVector contentOf(const QelTnf::Block& block) {
    return {block.GetData(), block.GetData() + block.GetSize()};
}

/// Puts raw bytes.
inline void putInto(QelTnf::Block& block, const ByteVector& bytes) {
    block.Put(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

} // namespace Support
