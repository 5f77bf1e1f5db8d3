#pragma once

#include <cstdint>
#include <string>

namespace QelTnf {

/// An entry of the catalogue. The block's id is the index of its entry and is not stored.
struct BlockInfo {
    std::uint8_t number; ///< A serial from 1 that wraps in 8 bits.
    std::string name;
    std::uint64_t position = 0; ///< The block's place, an offset in the file. In memory only.
    std::uint32_t length = 0;   ///< Bytes in the file.
    std::uint8_t flags = 0;
    std::uint8_t reserved = 0;
    bool frozen = false;   ///< Written, and takes no more values. In memory only.
    bool released = false; ///< An Index Block that got a new buffer after it was written. In memory only.
    std::uint32_t uncompressedLength = 0; ///< The content's length, set when frozen. In memory only.
};

} // namespace QelTnf
