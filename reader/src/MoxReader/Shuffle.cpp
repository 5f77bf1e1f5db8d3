#include "MoxReader/Shuffle.h"

#include "MoxReader/Format.h"

#include <bit>

namespace MoxReader {

namespace {

template <class T>
std::vector<T> unshuffle(std::span<const std::uint8_t> payload, std::uint8_t width) {
    if (payload.empty()) {
        return {};
    }
    const auto items = payload.size() / (std::size_t{width} * Format::ElementSize);
    std::vector<T> values(items * width);
    for (std::size_t component = 0; component < width; ++component) {
        const auto* planes = payload.data() + component * items * Format::ElementSize;
        for (std::size_t item = 0; item < items; ++item) {
            std::uint32_t word = 0;
            for (std::size_t byte = 0; byte < Format::ElementSize; ++byte) {
                word |= std::uint32_t{planes[byte * items + item]} << (8 * byte);
            }
            values[item * width + component] = std::bit_cast<T>(word);
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
