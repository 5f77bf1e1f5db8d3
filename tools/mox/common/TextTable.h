#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace MoxTool {

/// Rows of text in columns: the first flush left, all others flush right. Widths are counted in characters. A
/// column is no wider than 100; what is longer moves the rest of its row.
class TextTable {
public:
    /// All rows need the same number of cells. Cells must be fit for a terminal; see visibleText().
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    void print(std::FILE* file) const;

private:
    std::vector<std::size_t> columnWidths() const;

    std::vector<std::vector<std::string>> rows_;
};

} // namespace MoxTool
