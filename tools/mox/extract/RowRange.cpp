#include "RowRange.h"

#include <algorithm>
#include <charconv>

namespace MoxTool {

namespace {

/// Reads a whole number into a target, which an empty text leaves alone.
bool readEnd(std::string_view text, std::size_t& target) {
    if (text.empty()) {
        return true;
    }
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, target);
    return result.ec == std::errc() && result.ptr == end;
}

} // namespace

std::optional<RowRange> RowRange::parse(std::string_view text) {
    RowRange range;
    const auto colon = text.find(':');
    const auto last = colon == std::string_view::npos ? text : text.substr(colon + 1);
    const bool isRead = readEnd(text.substr(0, colon), range.first_) && readEnd(last, range.last_);
    const bool isSound = isRead && range.first_ <= range.last_ && text.size() > (colon == 0 ? 1U : 0U);
    return isSound ? std::optional(range) : std::nullopt;
}

void RowRange::cut(NumberTable& table) const {
    const auto rows = table.rows();
    const auto begin = static_cast<std::ptrdiff_t>(std::min(first_, rows) * table.width);
    const auto end = static_cast<std::ptrdiff_t>((last_ < rows ? last_ + 1 : rows) * table.width);
    std::visit(
        [&](auto& numbers) {
            numbers.erase(numbers.begin() + end, numbers.end());
            numbers.erase(numbers.begin(), numbers.begin() + std::min(begin, end));
        },
        table.numbers);
}

} // namespace MoxTool
