#include "matchesGlob.h"

#include "utf8.h"

#include <algorithm>

namespace MoxTool {

namespace {

// How many bytes of the text the first letter of the pattern matches; 0 if it does not match.
std::size_t fit(std::string_view pattern, std::string_view text) {
    if (pattern.empty() || text.empty()) {
        return 0;
    }
    if (pattern[0] == '?') {
        return std::max<std::size_t>(utf8CharacterSize(text), 1);
    }
    return pattern[0] == text[0] ? 1 : 0;
}

} // namespace

// Only the last * ever needs to match more: what precedes it already fits.
bool matchesGlob(std::string_view pattern, std::string_view text) {
    std::string_view afterStar, retry;
    bool hasStar = false;
    while (!text.empty() || !pattern.empty()) {
        if (pattern.starts_with('*')) {
            pattern.remove_prefix(1);
            afterStar = pattern;
            retry = text;
            hasStar = true;
        } else if (const auto size = fit(pattern, text)) {
            pattern.remove_prefix(1);
            text.remove_prefix(size);
        } else if (hasStar && !retry.empty()) {
            retry.remove_prefix(1);
            pattern = afterStar;
            text = retry;
        } else {
            return false;
        }
    }
    return true;
}

} // namespace MoxTool
