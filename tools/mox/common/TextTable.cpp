#include "TextTable.h"

#include "utf8.h"

#include <fmt/format.h>

#include <algorithm>

namespace MoxTool {

namespace {

std::string cellText(const std::string& cell, std::size_t width, bool isFirst) {
    const std::string padding(width - utf8Length(cell), ' ');
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
            widths[column] = std::max(widths[column], utf8Length(row[column]));
        }
    }
    return widths;
}

} // namespace MoxTool
