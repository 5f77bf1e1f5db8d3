#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace Support {

/// Two texts whose hashes have the same low 32 bits, which are all that the tables of the library compare.
/// @param difference Bits in which they differ all the same.
std::pair<std::string, std::string> textsWithEqualHashes(std::uint32_t difference = 0);

} // namespace Support
