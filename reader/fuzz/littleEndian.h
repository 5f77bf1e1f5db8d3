#pragma once

#include "Streams.h"

namespace MoxFuzz {

/// The number of 32 bits at a place that has four bytes.
inline std::uint32_t wordAt(ByteSpan bytes, std::size_t place) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        word |= std::uint32_t{bytes[place + i]} << (8 * i);
    }
    return word;
}

inline void setWord(Bytes& bytes, std::size_t place, std::uint32_t word) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[place + i] = static_cast<std::uint8_t>(word >> (8 * i));
    }
}

inline void appendWord(Bytes& bytes, std::uint32_t word) {
    bytes.resize(bytes.size() + 4);
    setWord(bytes, bytes.size() - 4, word);
}

} // namespace MoxFuzz
