#include <Qel/Tnf/BlockSizeVariable.h>

#include <cctype>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>

namespace QelTnf {

namespace {

constexpr std::uint32_t NotSet = std::numeric_limits<std::uint32_t>::max();

// Gives on every platform what strtoul gives where `unsigned long` has 32 bits.
std::uint32_t parse(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0) {
        text.remove_prefix(1);
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::uint32_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        return NotSet;
    }
    return negative ? 0U - number : number;
}

} // namespace

std::optional<std::uint32_t> blockSizeVariable() {
    const char* const text = std::getenv("MOXWRITER_DEFAULT_BLOCK_SIZE");
    if (text == nullptr) {
        return std::nullopt;
    }
    const std::uint32_t number = parse(text);
    return number == NotSet ? std::nullopt : std::optional(number);
}

} // namespace QelTnf
