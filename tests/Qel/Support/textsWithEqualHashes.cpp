#include "Qel/Support/textsWithEqualHashes.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace Support {

std::pair<std::string, std::string> textsWithEqualHashes(std::uint32_t difference) {
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
    for (const auto& [hash, number] : hashes) {
        const std::pair sought(hash ^ difference, number + 1);
        const auto found = std::lower_bound(hashes.begin(), hashes.end(), sought);
        if (found != hashes.end() && found->first == sought.first) {
            return {text(number), text(found->second)};
        }
    }
    throw std::logic_error("no two texts have such hashes");
}

} // namespace Support
