#include "visibleText.h"

#include "utf8.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace MoxTool {

namespace {

// U+0080 to U+009F steer some terminals, as the control characters of ASCII do.
bool isControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character[0]);
    return first < 0x20 || first == 0x7F ||
           (first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0);
}

std::string escapeOf(char byte) {
    switch (byte) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    case '\\':
        return "\\\\";
    default:
        return fmt::format("\\x{:02X}", static_cast<unsigned char>(byte));
    }
}

bool isVisible(std::string_view character) {
    return !character.empty() && !isControl(character);
}

/// @param mayStay Whether a visible character needs no escape.
template <typename MayStay>
std::string visible(std::string_view text, MayStay mayStay) {
    std::string result;
    while (!text.empty()) {
        const auto character = text.substr(0, utf8CharacterSize(text));
        const auto bytes = text.substr(0, std::max<std::size_t>(character.size(), 1));
        if (isVisible(character) && mayStay(character)) {
            result += character;
        } else {
            std::for_each(bytes.begin(), bytes.end(), [&](char byte) { result += escapeOf(byte); });
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

} // namespace

std::string visibleText(std::string_view text) {
    return visible(text, [](std::string_view character) { return character != "\\"; });
}

std::string visibleLine(std::string_view line) {
    return visible(line, [](std::string_view) { return true; });
}

} // namespace MoxTool
