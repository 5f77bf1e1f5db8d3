#include "random/Support/quoted.h"

namespace RandomUse {

namespace {

std::string escaped(const std::string& text) {
    constexpr const char* digits = "0123456789abcdef";
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            result += '\\';
            result += character;
        } else if (byte >= 0x20 && byte < 0x7f) {
            result += character;
        } else {
            result += "\\x";
            result += digits[byte / 16];
            result += digits[byte % 16];
        }
    }
    return result;
}

} // namespace

std::string quoted(const std::string& text) {
    constexpr std::size_t longest = 60;
    if (text.size() <= longest) {
        return '"' + escaped(text) + '"';
    }
    return '"' + escaped(text.substr(0, longest)) + "...\" (" + std::to_string(text.size()) + " bytes)";
}

} // namespace RandomUse
