#include "xmlText.h"

#include "../../common/utf8.h"

#include <fmt/core.h>

#include <algorithm>

namespace MoxTool {

namespace {

std::string escape(char letter) {
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

} // namespace

std::string xmlText(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto size = utf8CharacterSize(text);
        const auto first = static_cast<unsigned char>(text[0]);
        if (size == 0 || first < 0x20) {
            result += fmt::format("\\x{:02X}", first);
        } else if (size == 1) {
            result += escape(text[0]);
        } else {
            result += text.substr(0, size);
        }
        text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return result;
}

} // namespace MoxTool
