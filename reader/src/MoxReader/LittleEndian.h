#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>

namespace MoxReader {

/// The unsigned integer whose lowest byte is bytes[0].
template <std::unsigned_integral T>
constexpr T littleEndian(const std::uint8_t* bytes) {
    T value = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) {
        value = static_cast<T>(value | static_cast<T>(static_cast<T>(bytes[i]) << (8 * i)));
    }
    return value;
}

template <std::same_as<float> T>
constexpr T littleEndian(const std::uint8_t* bytes) {
    return std::bit_cast<float>(littleEndian<std::uint32_t>(bytes));
}

template <std::same_as<double> T>
constexpr T littleEndian(const std::uint8_t* bytes) {
    return std::bit_cast<double>(littleEndian<std::uint64_t>(bytes));
}

} // namespace MoxReader
