#pragma once

#include "FloatNarrowing.h"

#include <cstddef>
#include <span>
#include <vector>

namespace MoxTool {

/// A table of floats that is filled column by column from doubles.
class RealTable {
public:
    /// All zeros.
    RealTable(std::size_t rows, std::size_t columns) : width(columns), cells(rows * columns) {}

    /// @param values One for each row.
    void setColumn(std::size_t column, std::span<const double> values, FloatNarrowing& narrowing);

    std::size_t columns() const { return width; }
    std::size_t rows() const { return cells.size() / width; }
    /// Row by row.
    const std::vector<float>& numbers() const { return cells; }

private:
    std::size_t width;
    std::vector<float> cells;
};

} // namespace MoxTool
