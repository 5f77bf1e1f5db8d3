#include "writeCsv.h"

#include "../common/numberText.h"
#include "../common/visibleText.h"
#include "putPiece.h"

#include <fmt/format.h>

#include <string>

namespace MoxTool {

namespace {

std::string cellText(float number) {
    return numberText(number);
}

std::string cellText(std::uint32_t number) {
    return fmt::format_int(number).str();
}

std::string titleText(const std::string& name) {
    const auto visible = visibleText(name);
    if (visible.find_first_of(",\"") == std::string::npos) {
        return visible;
    }
    std::string quoted = "\"";
    for (const char letter : visible) {
        quoted += letter == '"' ? "\"\"" : std::string(1, letter);
    }
    return quoted + '"';
}

// Ends a row, whose cells have a comma after each.
void endRow(std::string& piece) {
    piece.back() = '\n';
}

void addNames(std::string& piece, const std::vector<NumberTable>& tables) {
    for (const auto& table : tables) {
        for (const auto& name : table.names) {
            piece += titleText(name) + ',';
        }
    }
    if (!piece.empty()) {
        endRow(piece);
    }
}

void addCells(std::string& piece, const NumberTable& table, std::size_t row) {
    std::visit(
        [&](const auto& numbers) {
            for (std::size_t column = 0; column < table.width; ++column) {
                piece += cellText(numbers[row * table.width + column]);
                piece += ',';
            }
        },
        table.numbers);
}

} // namespace

void writeCsv(std::ostream& out, const std::vector<NumberTable>& tables, bool header) {
    std::string piece;
    if (header) {
        addNames(piece, tables);
    }
    const auto rows = tables.back().rows();
    for (std::size_t row = 0; row < rows; ++row) {
        for (const auto& table : tables) {
            addCells(piece, table, row);
        }
        endRow(piece);
        putLargePiece(out, piece);
    }
    putPiece(out, piece);
}

} // namespace MoxTool
