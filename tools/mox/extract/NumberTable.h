#pragma once

#include "../common/NumberFile.h"

#include <cstddef>
#include <string>
#include <vector>

namespace MoxTool {

/// Numbers in rows, and the names of their columns.
struct NumberTable {
    std::vector<std::string> names; ///< One for each column.
    Numbers numbers;                ///< Row by row.
    std::size_t width = 1;          ///< Numbers in each row; 0 only without numbers.

    std::size_t rows() const {
        return width == 0 ? 0 : std::visit([](const auto& all) { return all.size(); }, numbers) / width;
    }
};

} // namespace MoxTool
