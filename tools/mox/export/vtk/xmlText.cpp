#include "xmlText.h"

#include "../../common/utf8.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

namespace {

std::string entityOf(char letter) {
    switch (letter) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return {letter};
    }
}

// XML allows no control characters and neither of the last two characters of the first plane.
bool isForbidden(std::string_view character) {
    return static_cast<unsigned char>(character[0]) < 0x20 || character == "\xEF\xBF\xBE" ||
           character == "\xEF\xBF\xBF";
}

std::string hexadecimal(std::string_view bytes) {
    std::string result;
    for (const char byte : bytes) {
        result += fmt::format("\\x{:02X}", static_cast<unsigned char>(byte));
    }
    return result;
}

} // namespace

std::string xmlText(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto size = utf8CharacterSize(text);
        const auto bytes = text.substr(0, std::max<std::size_t>(size, 1));
        if (size == 0 || isForbidden(bytes)) {
            result += hexadecimal(bytes);
        } else if (size == 1) {
            result += entityOf(bytes[0]);
        } else {
            result += bytes;
        }
        text.remove_prefix(bytes.size());
    }
    return result;
}

} // namespace MoxTool
