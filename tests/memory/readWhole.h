#pragma once

#include <cstdint>
#include <string>

namespace Memory {

/// Reads everything that a file holds, by every road that the reader offers.
/// @return a sum of all of it.
/// @throws What the reader throws.
std::uint64_t readWhole(const std::string& path);

} // namespace Memory
