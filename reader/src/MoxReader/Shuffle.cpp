#include "MoxReader/Shuffle.h"

#include "MoxReader/Format.h"

#include <algorithm>
#include <array>
#include <bit>

namespace MoxReader {

namespace {

/// So few items at a time that their bytes and numbers stay in the processor's first-level cache.
constexpr std::size_t TileItems = 1024;

using Tile = std::array<std::uint32_t, TileItems>;

/// Sets the first `count` words of a tile to those whose bytes are at the beginnings of four planes.
void joinPlanes(const std::uint8_t* planes, std::size_t planeSize, std::size_t count, Tile& words) {
    for (std::size_t i = 0; i < count; ++i) {
        words[i] = std::uint32_t{planes[i]} | std::uint32_t{planes[planeSize + i]} << 8 |
                   std::uint32_t{planes[2 * planeSize + i]} << 16 |
                   std::uint32_t{planes[3 * planeSize + i]} << 24;
    }
}

template <class T>
std::vector<T> unshuffle(std::span<const std::uint8_t> payload, std::uint8_t width) {
    if (payload.empty()) {
        return {};
    }
    const auto items = payload.size() / (std::size_t{width} * Format::ElementSize);
    std::vector<T> values;
    values.reserve(items * width);
    Tile words;
    for (std::size_t first = 0; first < items; first += TileItems) {
        const auto count = std::min(TileItems, items - first);
        values.resize((first + count) * width);
        for (std::size_t component = 0; component < width; ++component) {
            const auto* planes = payload.data() + component * items * Format::ElementSize;
            joinPlanes(planes + first, items, count, words);
            auto* const target = values.data() + first * width + component;
            for (std::size_t i = 0; i < count; ++i) {
                target[i * width] = std::bit_cast<T>(words[i]);
            }
        }
    }
    return values;
}

} // namespace

std::vector<float> unshuffleFloats(std::span<const std::uint8_t> payload, std::uint8_t width) {
    return unshuffle<float>(payload, width);
}

std::vector<std::uint32_t> unshuffleUnsigned(std::span<const std::uint8_t> payload, std::uint8_t width) {
    return unshuffle<std::uint32_t>(payload, width);
}

} // namespace MoxReader
