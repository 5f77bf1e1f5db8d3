#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace MoxReader {

// Undo the order in which "Heavy Data" stores numbers: component by component, and in each component first
// the lowest byte of every item, then the second, and so on. REQUIRES width > 0 and payload.size() a multiple
// of 4 x width. The result is row-major.

std::vector<float> unshuffleFloats(std::span<const std::uint8_t> payload, std::uint8_t width);
std::vector<std::uint32_t> unshuffleUnsigned(std::span<const std::uint8_t> payload, std::uint8_t width);

} // namespace MoxReader
