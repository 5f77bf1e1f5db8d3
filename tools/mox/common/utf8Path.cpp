#include "utf8Path.h"

#include "utf8.h"

#include <algorithm>
#include <type_traits>

namespace MoxTool {

namespace {

// Where paths are bytes, they may have any.
constexpr bool AreBytes = std::is_same_v<std::filesystem::path::value_type, char>;

[[maybe_unused]] std::u8string validUtf8(std::string_view text) {
    std::u8string valid;
    while (!text.empty()) {
        const auto size = utf8CharacterSize(text);
        if (size == 0) {
            valid += u8"\uFFFD";
        } else {
            valid.append(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
        }
        text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return valid;
}

} // namespace

std::filesystem::path pathOf(std::string_view utf8) {
    if constexpr (AreBytes) {
        return std::filesystem::path(utf8);
    } else {
        return std::filesystem::path(validUtf8(utf8));
    }
}

std::string utf8Of(const std::filesystem::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

} // namespace MoxTool
