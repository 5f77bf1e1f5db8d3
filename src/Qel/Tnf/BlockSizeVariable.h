#pragma once

#include <cstdint>
#include <optional>

namespace QelTnf {

/// The environment variable `MOXWRITER_DEFAULT_BLOCK_SIZE`, looked up anew at each call.
///
/// The digits at its start, after any blanks and a sign, are read as a 32-bit number that saturates; a minus
/// sign negates it within 32 bits. Text without digits is 0, which is a valid value.
/// @return no value if the variable is not set or gives 0xFFFFFFFF.
std::optional<std::uint32_t> blockSizeVariable();

} // namespace QelTnf
