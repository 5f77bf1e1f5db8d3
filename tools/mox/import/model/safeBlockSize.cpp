#include "safeBlockSize.h"

#include <algorithm>

namespace MoxTool {

namespace {

// A block takes one more dataset as long as it is below its size. What exceeds this bound is lost: the room for its
// compressed form is counted in 32 bits.
constexpr std::uint64_t LargestContent = 3'500'000'000;

} // namespace

std::optional<std::uint32_t> safeBlockSize(std::uint64_t largest) {
    if (largest >= LargestContent / 2) {
        return std::nullopt;
    }
    const auto size = std::min(2 * largest + 1, LargestContent - largest);
    return static_cast<std::uint32_t>(size);
}

} // namespace MoxTool
