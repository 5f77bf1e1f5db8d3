#pragma once

#include <cstdint>

namespace RandomUse {

/// A size as an array takes it: its low 32 bits, with their sign.
inline std::int64_t narrowed(std::uint64_t size) {
    const std::uint64_t low = size % (std::uint64_t{1} << 32);
    const auto number = static_cast<std::int64_t>(low);
    return low < (std::uint64_t{1} << 31) ? number : number - (std::int64_t{1} << 32);
}

} // namespace RandomUse
