#include "TextTable.h"

#include "utf8.h"

#include <fmt/format.h>

#include <algorithm>

namespace MoxTool {

namespace {

// A longer cell moves the rest of its row instead of widening all others.
constexpr std::size_t WidestCell = 100;

std::string cellText(const std::string& cell, std::size_t width, bool isFirst) {
    const auto length = utf8Length(cell);
    const std::string padding(length < width ? width - length : 0, ' ');
    return isFirst ? cell + padding : "  " + padding + cell;
}

} // namespace

void TextTable::print(std::FILE* file) const {
    const auto widths = columnWidths();
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            line += cellText(row[column], widths[column], column == 0);
        }
        fmt::print(file, "{}\n", line);
    }
}

std::vector<std::size_t> TextTable::columnWidths() const {
    std::vector<std::size_t> widths(rows_.empty() ? 0 : rows_.front().size());
    for (const auto& row : rows_) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], std::min(utf8Length(row[column]), WidestCell));
        }
    }
    return widths;
}

} // namespace MoxTool
