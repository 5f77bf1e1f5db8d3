#include "utf8.h"

#include <algorithm>
#include <array>

namespace MoxTool {

namespace {

// The lead bytes of one length, and the second bytes that may follow them. The latter exclude overlong forms,
// surrogates and whatever is beyond the last character.
struct Utf8Form {
    unsigned char firstLead, lastLead;
    unsigned char firstSecond, lastSecond;
    std::size_t size;
};

constexpr std::array Utf8Forms = {
    Utf8Form{0xC2, 0xDF, 0x80, 0xBF, 2}, Utf8Form{0xE0, 0xE0, 0xA0, 0xBF, 3},
    Utf8Form{0xE1, 0xEC, 0x80, 0xBF, 3}, Utf8Form{0xED, 0xED, 0x80, 0x9F, 3},
    Utf8Form{0xEE, 0xEF, 0x80, 0xBF, 3}, Utf8Form{0xF0, 0xF0, 0x90, 0xBF, 4},
    Utf8Form{0xF1, 0xF3, 0x80, 0xBF, 4}, Utf8Form{0xF4, 0xF4, 0x80, 0x8F, 4},
};

bool fits(const Utf8Form& form, std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < form.firstLead || lead > form.lastLead || text.size() < form.size) {
        return false;
    }
    const auto second = static_cast<unsigned char>(text[1]);
    return second >= form.firstSecond && second <= form.lastSecond &&
           std::all_of(text.begin() + 2, text.begin() + static_cast<std::ptrdiff_t>(form.size),
                       isUtf8Continuation);
}

} // namespace

bool isUtf8Continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t utf8CharacterSize(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    if (static_cast<unsigned char>(text[0]) < 0x80) {
        return 1;
    }
    for (const auto& form : Utf8Forms) {
        if (fits(form, text)) {
            return form.size;
        }
    }
    return 0;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const auto size = utf8CharacterSize(text);
        if (size == 0) {
            return false;
        }
        text.remove_prefix(size);
    }
    return true;
}

std::size_t utf8Length(std::string_view text) {
    std::size_t length = 0;
    for (; !text.empty(); ++length) {
        text.remove_prefix(std::max<std::size_t>(utf8CharacterSize(text), 1));
    }
    return length;
}

} // namespace MoxTool
