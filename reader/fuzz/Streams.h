#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace MoxFuzz {

using Bytes = std::vector<std::uint8_t>;
using ByteSpan = std::span<const std::uint8_t>;

/// The contents of the six streams of a file. In a fuzz input of this form stand, in this order, the division, the
/// sizes of all streams but the last with 16 bits each, and the contents.
struct Streams {
    enum Stream : std::size_t { Tree, Light, Attributes, Resources, Global, Heavy, Count };

    static constexpr std::array<std::string_view, Count> Names = {
        "Mox Tree", "Light Data", "Attributes", "Resources", "Global Information", "Heavy Data"};
    static constexpr std::size_t HeadSize = 1 + 2 * (Count - 1);

    /// Any bytes are streams: sizes that are too large end with the bytes.
    static Streams fromInput(ByteSpan input);
    Bytes toInput() const;
    /// Bytes of toInput().
    std::size_t inputSize() const;

    std::array<Bytes, Count> contents;
    /// How "Heavy Data" is divided into blocks, and which of them are lost; see FuzzRecords.cpp.
    std::uint8_t division = 0;
};

} // namespace MoxFuzz
