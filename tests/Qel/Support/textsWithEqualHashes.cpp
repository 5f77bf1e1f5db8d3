#include "Qel/Support/textsWithEqualHashes.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace Support {

std::pair<std::string, std::string> textsWithEqualHashes() {
    // So many that twenty pairs are to be expected.
    constexpr std::uint32_t count = 400'000;
    // Hashes of 32 bits differ for all texts that differ in few bytes.
    const auto text = [](std::uint32_t number) {
        return std::to_string(number) + " text " + std::to_string(std::uint64_t{number} * number);
    };
    std::vector<std::pair<std::uint32_t, std::uint32_t>> hashes;
    hashes.reserve(count);
    for (std::uint32_t number = 0; number < count; ++number) {
        hashes.emplace_back(static_cast<std::uint32_t>(std::hash<std::string_view>()(text(number))), number);
    }
    std::sort(hashes.begin(), hashes.end());
    const auto first =
        std::adjacent_find(hashes.begin(), hashes.end(),
                           [](const auto& one, const auto& other) { return one.first == other.first; });
    if (first == hashes.end()) {
        throw std::logic_error("no two texts have the same hash");
    }
    return {text(first->second), text((first + 1)->second)};
}

} // namespace Support
