#pragma once

#include <string>
#include <utility>

namespace Support {

/// Two texts whose hashes have the same low 32 bits, which are all that the tables of the library compare.
std::pair<std::string, std::string> textsWithEqualHashes();

} // namespace Support
